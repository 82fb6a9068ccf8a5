// Comfort on top of pages that work without it: rows without a round trip, a warning before answers
// are lost, saving every 30 seconds, the focus on the summary of errors.
(function () {
  "use strict";
  var form = document.getElementById("form");
  var summary = document.getElementById("summary");
  // A browser that knows `autofocus` there has done it by the first frame.
  if (summary) requestAnimationFrame(function () {
    if (document.activeElement !== summary) summary.focus();
  });
  if (!form || form.dataset.state === "accepted") return;

  var state = document.getElementById("state");
  var changed = form.dataset.unsaved === "true";
  var saving = false;
  var pressed = null;  // the button that waits
  var edits = 0;

  function noteChange() {
    changed = true;
    edits += 1;
  }
  form.addEventListener("input", noteChange);
  form.addEventListener("change", noteChange);

  window.addEventListener("beforeunload", function (event) {
    if (!changed) return;
    event.preventDefault();
    event.returnValue = "";
  });
  // A button that is pressed while the form is being saved by itself waits for that: what it sends
  // begins with what was saved then, and would be taken for somebody else's otherwise.
  form.addEventListener("submit", function (event) {
    if (saving && event.submitter) {
      event.preventDefault();
      pressed = event.submitter;  // nothing is sent yet: who leaves the page is still warned
      return;
    }
    changed = false;
  });

  // Rows

  function rowsOf(table) { return table.querySelectorAll("tbody > tr"); }

  // The row itself may be described by an error.
  function withAll(row, selector) { return [row].concat(Array.from(row.querySelectorAll(selector))); }

  function focusOn(row) { (row.querySelector("input, select, textarea") || row).focus(); }

  function renumber(row, id, number) {
    var old = row.dataset.row;
    var anchor = "q-" + id;
    row.dataset.row = String(number);
    row.id = anchor + "-" + number;
    withAll(row, "[name], [id], [for], [aria-describedby]").forEach(function (each) {
      if (each.name && each.name.indexOf(id + "___") === 0) {
        each.name = each.name.replace(/_\d+$/, "_" + number);
      }
      ["id", "for", "aria-describedby"].forEach(function (attribute) {
        var text = each.getAttribute(attribute);
        if (!text) return;
        each.setAttribute(attribute, text.split(anchor + "-" + old + "-").join(anchor + "-" + number + "-"));
      });
      if (each.value && each.name === "_action") each.value = "remove-row:" + id + ":" + number;
    });
    row.querySelectorAll(".row-number").forEach(function (each) { each.textContent = number; });
  }

  function keepCount(table) {
    table.querySelector(".row-count").value = String(rowsOf(table).length);
    noteChange();
  }

  form.addEventListener("click", function (event) {
    var button = event.target.closest("button[name=_action]");
    if (!button) return;
    var words = button.value.split(":");
    var table = button.closest(".table");
    if (words[0] === "remove-row") {
      var row = button.closest("tr");
      if (rowsOf(table).length < 2) return;  // the last row is the server's to give back later
      event.preventDefault();
      var neighbour = row.nextElementSibling || row.previousElementSibling;
      row.remove();
      rowsOf(table).forEach(function (each, at) { renumber(each, words[1], at + 1); });
      keepCount(table);
      focusOn(neighbour);
    } else if (words[0] === "add-row") {
      var rows = rowsOf(table);
      if (rows.length === 0) return;  // there is none to copy: the server makes it
      event.preventDefault();
      var copy = rows[rows.length - 1].cloneNode(true);
      copy.querySelectorAll(".error, .stored").forEach(function (each) { each.remove(); });
      // An answer that is no choice stands last, in a row of buttons or as an option.
      copy.querySelectorAll("input.no-choice").forEach(function (each) {
        (each.closest(".tick") || each).remove();
      });
      copy.querySelectorAll("select.no-choice").forEach(function (each) {
        each.lastElementChild.remove();
        each.removeAttribute("class");
      });
      copy.querySelectorAll(".wrong, .differs").forEach(function (each) {
        each.classList.remove("wrong", "differs");
      });
      withAll(copy, "[aria-describedby]").forEach(function (each) {
        each.removeAttribute("aria-invalid");
        var hints = (each.getAttribute("aria-describedby") || "").split(" ").filter(function (id) {
          return /-hint$/.test(id);
        });
        if (hints.length) each.setAttribute("aria-describedby", hints.join(" "));
        else each.removeAttribute("aria-describedby");
      });
      copy.querySelectorAll("input, select, textarea").forEach(function (each) {
        if (each.type === "checkbox" || each.type === "radio") each.checked = false;
        else each.value = "";
      });
      copy.querySelectorAll("output").forEach(function (each) { each.removeAttribute("tabindex"); });
      copy.querySelectorAll("output.computed").forEach(function (each) { each.textContent = ""; });
      rows[0].parentNode.appendChild(copy);
      renumber(copy, words[1], rows.length + 1);
      keepCount(table);
      focusOn(copy);
    }
  });

  // Saving by itself

  // Where the text has an element of its own, that tells its language. A page.xsl may leave places out.
  function write(place, text) {
    if (place) (place.firstElementChild || place).textContent = text;
  }
  function tell(text) { write(state && state.querySelector("strong"), text); }

  // More than a host waits for a body (60 seconds), or a balancer for the host (75 in deploy/).
  var mostMilliseconds = 90000;
  // Whether nobody answered when a form without an address was saved: the host may have made a form
  // of it all the same, and would make another one each time.
  var mayBeStored = false;

  function save() {
    if (!changed || saving || mayBeStored) return;
    var before = edits;
    var body = new URLSearchParams(new FormData(form));
    body.set("_action", "park");
    var waiting = new AbortController();
    var limit = window.setTimeout(function () { waiting.abort(); }, mostMilliseconds);
    var answered = false;  // by the host: a balancer has its own pages
    saving = true;
    fetch(form.action, {
      method: "POST", body: body, headers: { "Accept": "application/json" }, signal: waiting.signal
    })
      .then(function (answer) {
        return answer.json().then(function (json) {
          answered = "version" in json || "error" in json;
          if (!answered || !answer.ok) throw new Error(String(answer.status));
          form.elements._version.value = String(json.version);
          form.elements._token.value = json.token;
          if (edits === before) changed = false;
          tell(form.dataset.textSaved);
          if (form.getAttribute("action") !== "/parked/" + json.id) {
            // The form has its address now; the page that can send it stands there.
            form.setAttribute("action", "/parked/" + json.id);
            history.replaceState(null, "", "/parked/" + json.id);
            write(document.getElementById("first-save"), form.dataset.textSend);
          }
        });
      })
      .catch(function () {
        if (!answered) mayBeStored = form.getAttribute("action").indexOf("/parked/") !== 0;
        tell(answered ? form.dataset.textUnsaved : form.dataset.textUnanswered);
      })
      .finally(function () {
        window.clearTimeout(limit);
        saving = false;
        var button = pressed;
        pressed = null;
        // Without an answer it would get none either, and leave the page for that.
        if (button && answered) button.click();
      });
  }
  // Which of two answers is kept after a conflict is for a person to say.
  if (form.dataset.notice !== "conflict") window.setInterval(save, 30000);
})();
