-- What wrk does to the web host: each connection is a person who opens an empty form, saves it, sends it
-- with mistakes, mends them, sends it again and looks at the receipt. It needs one connection a thread, so
-- that requests and answers follow each other. Each thread writes a file into VARNEL_TIMES: a line for each
-- answer, the kind of its request and the milliseconds that it took; "wrong" for one of another status.
--
--   VARNEL_EXAMPLE=examples/inspection VARNEL_TIMES=/tmp \
--     wrk -t 8 -c 8 -d 60 -s bench/load/cycle.lua http://127.0.0.1:8080
local ffi = require("ffi")
ffi.cdef([[
  typedef struct { long seconds; long nanoseconds; } varnel_time;
  int clock_gettime(int clock, varnel_time *time);
]])
local time = ffi.new("varnel_time")
local function milliseconds()
  ffi.C.clock_gettime(1, time)  -- that which never goes back
  return tonumber(time.seconds) * 1000 + tonumber(time.nanoseconds) / 1e6
end

local count = 0
function setup(thread)
  count = count + 1
  thread:set("number", count)
end

local faulty, complete, drafted
local times
local step, began, place, token, version = "page", 0, "", "", ""

local function form(name)
  local file = assert(io.open(os.getenv("VARNEL_EXAMPLE") .. "/" .. name .. ".form"))
  local body = file:read("*a"):gsub("[\r\n]+$", "")
  file:close()
  return body
end

function init()
  drafted, faulty, complete = form("draft"), form("faulty"), form("complete")
  times = assert(io.open(os.getenv("VARNEL_TIMES") .. "/" .. number .. ".times", "w"))
end

local function post(path, answers, action)
  local body = answers .. "&_token=" .. token .. "&_version=" .. version .. "&_action=" .. action
  return wrk.format("POST", path, { ["Content-Type"] = "application/x-www-form-urlencoded" }, body)
end

function request()
  began = milliseconds()
  if step == "page" then return wrk.format("GET", "/forms/inspection") end
  if step == "park" then return post("/forms/inspection", drafted, "park") end
  if step == "open" then return wrk.format("GET", place) end
  if step == "refuse" then return post(place, faulty, "submit") end
  if step == "accept" then return post(place, complete, "submit") end
  return wrk.format("GET", place)
end

local expected = { page = 200, park = 303, open = 200, refuse = 422, accept = 303, receipt = 200 }
local following = { page = "park", park = "open", open = "refuse", refuse = "accept",
                    accept = "receipt", receipt = "page" }

function response(status, headers, body)
  if status ~= expected[step] then  -- begins anew
    times:write("wrong ", step, " ", status, "\n")
    step = "page"
    return
  end
  times:write(step, " ", string.format("%.3f", milliseconds() - began), "\n")
  place = headers["Location"] or headers["location"] or place
  token = body:match('name="_token" value="([^"]*)"') or token
  version = body:match('name="_version" value="([^"]*)"') or version
  step = following[step]
end
