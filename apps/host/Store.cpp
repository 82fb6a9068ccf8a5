#include "host/Store.h"

#include <fcntl.h>
#include <soci/soci.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <mutex>
#include <string_view>
#include <utility>

#include "CannotRun.h"
#include "host/Embedded.h"
#include "host/HostOptions.h"
#include "host/Moment.h"
#include "host/Token.h"

namespace {

constexpr int kPoolWaitMilliseconds = 10'000;

struct Place {
  std::string strBackend;
  std::string strParameters;
  bool isSqlite() const { return strBackend == "sqlite3"; }
};

/// A part of an address with its escapes read.
std::string unescaped(std::string_view strPart) {
  std::string strText;
  for (std::size_t at = 0; at < strPart.size(); ++at) {
    if (strPart[at] != '%') {
      strText += strPart[at];
      continue;
    }
    const std::string_view strDigits = strPart.substr(at + 1, 2);
    const char* const end = strDigits.data() + strDigits.size();
    unsigned char byte = 0;
    const auto [last, problem] = std::from_chars(strDigits.data(), end, byte, 16);
    if (strDigits.size() < 2 || problem != std::errc() || last != end) {
      throw CannotRun("--store: a \"%\" in the address without two hexadecimal digits");
    }
    strText += static_cast<char>(byte);
    at += 2;
  }
  // The back end has no way to write these.
  const auto blnBad = [](char letter) {
    return static_cast<unsigned char>(letter) <= ' ' || letter == '\'' || letter == '"' ||
           letter == '\\';
  };
  if (std::ranges::any_of(strText, blnBad)) {
    throw CannotRun("--store: a blank, quote or backslash in the address");
  }
  return strText;
}

/// "USER@HOST:PORT/DB?NAME=VALUE" as the list of name=value pairs that the back end takes. A host
/// that holds colons stands in brackets.
std::string postgresqlParameters(std::string_view strUrl) {
  // A server that is gone without a word is given up after a while.
  std::string strParameters = "connect_timeout=5 tcp_user_timeout=10000";
  const auto add = [&](std::string_view strName, std::string_view strValue) {
    if (!strValue.empty()) strParameters += ' ' + unescaped(strName) + '=' + unescaped(strValue);
  };
  // Takes the part behind the last such mark off the address.
  const auto takeBehind = [&](char mark) -> std::string_view {
    const std::size_t lngMark = strUrl.rfind(mark);
    if (lngMark == std::string_view::npos) return {};
    const std::string_view strPart = strUrl.substr(lngMark + 1);
    strUrl = strUrl.substr(0, lngMark);
    return strPart;
  };
  std::string_view strMore = takeBehind('?');
  add("dbname", takeBehind('/'));
  const std::size_t lngAt = strUrl.rfind('@');
  if (lngAt != std::string_view::npos) {
    const std::string_view strUser = strUrl.substr(0, lngAt);
    strUrl = strUrl.substr(lngAt + 1);
    const std::size_t lngColon = strUser.find(':');
    add("user", strUser.substr(0, lngColon));
    if (lngColon != std::string_view::npos) add("password", strUser.substr(lngColon + 1));
  }
  if (!strUrl.ends_with(']')) add("port", takeBehind(':'));
  if (strUrl.starts_with('[') && strUrl.ends_with(']')) {
    strUrl = strUrl.substr(1, strUrl.size() - 2);
  }
  add("host", strUrl);
  while (!strMore.empty()) {
    const std::string_view strPair = strMore.substr(0, strMore.find('&'));
    strMore.remove_prefix(std::min(strPair.size() + 1, strMore.size()));
    const std::size_t lngEqual = strPair.find('=');
    if (lngEqual == std::string_view::npos) {
      throw CannotRun("--store: behind the \"?\" of an address stands NAME=VALUE");
    }
    add(strPair.substr(0, lngEqual), strPair.substr(lngEqual + 1));
  }
  return strParameters;
}

Place placeOf(const std::string& strStore) {
  if (!strStore.starts_with(kSqlite)) {
    return {"postgresql", postgresqlParameters(strStore.substr(kPostgresql.size()))};
  }
  const std::string strFile = strStore.substr(kSqlite.size());
  if (strFile.find('"') != std::string::npos) {
    throw CannotRun("--store: a quote in the file's name");
  }
  // Answers are nobody else's to read. SQLite gives the files beside it the rights of this one.
  const int descriptor = ::open(strFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (descriptor >= 0) ::close(descriptor);
  // Every commit is on the disk before it is acknowledged; a lock is waited for.
  return {"sqlite3", "db=\"" + strFile + "\" timeout=3 synchronous=full"};
}

void open(soci::session& sql, const Place& place) {
  sql.open(place.strBackend, place.strParameters);
  if (!place.isSqlite()) {
    sql << "SET client_min_messages TO warning";  // the log is the host's
    // One that is locked or too busy holds up a worker no longer than SQLite's would.
    sql << "SET lock_timeout TO 3000";
    sql << "SET statement_timeout TO 10000";
    return;
  }
  std::string strMode;
  sql << "PRAGMA journal_mode=WAL", soci::into(strMode);
  sql << "PRAGMA foreign_keys=ON";
}

/// Executes a prepared change and tells how many rows it changed.
long long changedBy(soci::statement statement) {
  statement.execute(true);
  return statement.get_affected_rows();
}

void executeAll(soci::session& sql, std::string_view strStatements) {
  for (std::size_t at = 0; at < strStatements.size();) {
    const std::size_t end = std::min(strStatements.find(';', at), strStatements.size());
    const std::string strStatement(strStatements.substr(at, end - at));
    if (strStatement.find_first_not_of(" \r\n\t") != std::string::npos) sql << strStatement;
    at = end + 1;
  }
}

/// Applies what is missing. Of several hosts that do so at once all but one fail on the first
/// statement of a migration.
void migrate(soci::session& sql) {
  sql << "CREATE TABLE IF NOT EXISTS migration (number BIGINT PRIMARY KEY, "
         "applied VARCHAR(32) NOT NULL)";
  long long lngLast = 0;
  sql << "SELECT COALESCE(MAX(number), 0) FROM migration", soci::into(lngLast);
  if (lngLast > migrations().back().lngNumber) {
    throw CannotRun("--store: its tables are those of a newer version");
  }
  for (const Migration& migration : migrations()) {
    long long lngApplied = 0;
    sql << "SELECT COUNT(*) FROM migration WHERE number = :n", soci::use(migration.lngNumber),
        soci::into(lngApplied);
    if (lngApplied > 0) continue;
    soci::transaction transaction(sql);
    const std::string strNow = momentText();
    sql << "INSERT INTO migration (number, applied) VALUES (:n, :t)",
        soci::use(migration.lngNumber), soci::use(strNow);
    executeAll(sql, migration.strSql);
    transaction.commit();
  }
}

std::string keyOf(soci::session& sql) {
  const std::string strFresh = randomId() + randomId();
  sql << "INSERT INTO setting (name, value) SELECT 'token-key', CAST(:v AS TEXT) "
         "WHERE NOT EXISTS (SELECT 1 FROM setting WHERE name = 'token-key')",
      soci::use(strFresh);
  std::string strKey;
  sql << "SELECT value FROM setting WHERE name = 'token-key'", soci::into(strKey);
  return strKey;
}

bool update(soci::session& sql, const StoredForm& form, const std::string& strState) {
  const std::int64_t lngBefore = form.lngVersion - 1;
  return changedBy((sql.prepare << "UPDATE form SET state = :s, version = :v, park = :p, "
                                   "row_counts = :r, result = :o, changed = :c "
                                   "WHERE id = :i AND version = :b AND state <> 'accepted'",
                    soci::use(strState), soci::use(form.lngVersion), soci::use(form.strParkXml),
                    soci::use(form.strRowCounts), soci::use(form.strResult),
                    soci::use(form.strChanged), soci::use(form.strId), soci::use(lngBefore))) == 1;
}

}  // namespace

struct Store::Pool {
  Pool(Place thePlace, std::size_t lngConnections)
      : place(std::move(thePlace)), sessions(lngConnections) {}

  /// Runs a `body` that changes something. SQLite has one writer at a time, and the others look
  /// again and again, ever less often, whether it is their turn; on a slow disk the one who just
  /// wrote is there again before they look, and they give up. So those of this host queue here.
  template <class Body>
  auto write(Body&& body) {
    std::unique_lock turn(writing, std::defer_lock);
    if (place.isSqlite()) turn.lock();
    return with(std::forward<Body>(body));
  }

  /// Runs `body` on a connection of its own. On one that was open before, whose server may have
  /// gone since, it gets a second try on a new one: a change that was done all the same is not done
  /// twice, for every change names the version that it changes.
  template <class Body>
  auto with(Body&& body) {
    std::size_t at = 0;
    if (!sessions.try_lease(at, kPoolWaitMilliseconds)) {
      throw StoreProblem("all connections to the store are in use");
    }
    const Lease lease{sessions, at};
    soci::session& sql = sessions.at(at);
    for (;;) {
      const bool blnStale = sql.get_backend() != nullptr && !place.isSqlite();
      try {
        if (sql.get_backend() == nullptr) open(sql, place);
        return body(sql);
      } catch (const soci::soci_error& error) {
        // Whatever state the connection is in: the next one begins afresh.
        try {
          sql.close();
        } catch (const soci::soci_error&) {
          // It was broken, which is why it is closed.
        }
        // Without its context, which quotes what was to be stored.
        const std::string strReason = error.get_error_message();
        if (!blnStale) throw StoreProblem(strReason.substr(0, strReason.find('\n')));
      }
    }
  }

  struct Lease {
    soci::connection_pool& sessions;
    std::size_t at;
    ~Lease() { sessions.give_back(at); }
  };

  Place place;
  std::mutex writing;
  soci::connection_pool sessions;
};

Store::Store(const std::string& strStore, std::size_t lngConnections)
    : pool_(std::make_unique<Pool>(placeOf(strStore), lngConnections)) {
  strKey_ = pool_->write([](soci::session& sql) {
    migrate(sql);
    return keyOf(sql);
  });
}

Store::~Store() = default;

void Store::ping() {
  pool_->with([](soci::session& sql) {
    long long lngOne = 0;
    sql << "SELECT COUNT(*) FROM migration", soci::into(lngOne);
  });
}

void Store::create(const StoredForm& form) {
  pool_->write([&](soci::session& sql) {
    sql << "INSERT INTO form (id, deployment, state, version, park, row_counts, result, created, "
           "changed) VALUES (:i, :d, :s, :v, :p, :r, :o, :c, :h)",
        soci::use(form.strId), soci::use(form.strDeployment), soci::use(form.strState),
        soci::use(form.lngVersion), soci::use(form.strParkXml), soci::use(form.strRowCounts),
        soci::use(form.strResult), soci::use(form.strCreated), soci::use(form.strChanged);
  });
}

std::optional<StoredForm> Store::find(const std::string& strId) {
  return pool_->with([&](soci::session& sql) -> std::optional<StoredForm> {
    StoredForm form;
    form.strId = strId;
    sql << "SELECT deployment, state, version, park, row_counts, result, created, changed "
           "FROM form WHERE id = :i",
        soci::use(strId), soci::into(form.strDeployment), soci::into(form.strState),
        soci::into(form.lngVersion), soci::into(form.strParkXml), soci::into(form.strRowCounts),
        soci::into(form.strResult), soci::into(form.strCreated), soci::into(form.strChanged);
    if (!sql.got_data()) return std::nullopt;
    return form;
  });
}

bool Store::replace(const StoredForm& form) {
  return pool_->write([&](soci::session& sql) { return update(sql, form, form.strState); });
}

bool Store::accept(const StoredForm& form, const std::string& strMessage,
                   const std::string& strTarget) {
  return pool_->write([&](soci::session& sql) {
    soci::transaction transaction(sql);
    if (!update(sql, form, "accepted")) return false;
    sql << "INSERT INTO message (id, accepted, message) VALUES (:i, :t, :m)", soci::use(form.strId),
        soci::use(form.strChanged), soci::use(strMessage);
    if (!strTarget.empty()) {
      const std::int64_t lngNow = millisecondsNow();
      sql << "INSERT INTO outbox (id, target, state, attempts, due, delivered) "
             "VALUES (:i, :t, 'waiting', 0, :d, '')",
          soci::use(form.strId), soci::use(strTarget), soci::use(lngNow);
    }
    transaction.commit();
    return true;
  });
}

std::optional<StoredMessage> Store::message(const std::string& strId) {
  return pool_->with([&](soci::session& sql) -> std::optional<StoredMessage> {
    StoredMessage message;
    soci::indicator targetIs = soci::i_null;
    soci::indicator deliveredIs = soci::i_null;
    sql << "SELECT m.accepted, m.message, o.target, o.delivered FROM message m "
           "LEFT JOIN outbox o ON o.id = m.id WHERE m.id = :i",
        soci::use(strId), soci::into(message.strAccepted), soci::into(message.strXml),
        soci::into(message.strTarget, targetIs), soci::into(message.strDelivered, deliveredIs);
    if (!sql.got_data()) return std::nullopt;
    return message;
  });
}

std::optional<OutboxItem> Store::claim(std::int64_t lngLeaseMilliseconds) {
  return pool_->write([&](soci::session& sql) -> std::optional<OutboxItem> {
    OutboxItem item;
    const std::int64_t lngNow = millisecondsNow();
    std::int64_t lngDue = 0;
    sql << "SELECT o.id, o.state, o.target, o.attempts, o.written, o.due, m.message FROM outbox o "
           "JOIN message m ON m.id = o.id WHERE o.state <> 'delivered' AND o.due <= :n "
           "ORDER BY o.due LIMIT 1",
        soci::use(lngNow), soci::into(item.strId), soci::into(item.strState),
        soci::into(item.strTarget), soci::into(item.lngAttempts), soci::into(item.lngWritten),
        soci::into(lngDue), soci::into(item.strMessage);
    if (!sql.got_data()) return std::nullopt;
    // The moment at which the lease ends also tells whose it is: a later claim moves it on.
    item.lngLease = lngNow + lngLeaseMilliseconds;
    ++item.lngAttempts;
    const bool blnMine =
        changedBy((sql.prepare << "UPDATE outbox SET due = :l, attempts = :a "
                                  "WHERE id = :i AND due = :d AND state = :s",
                   soci::use(item.lngLease), soci::use(item.lngAttempts), soci::use(item.strId),
                   soci::use(lngDue), soci::use(item.strState))) == 1;
    if (!blnMine) return std::nullopt;
    return item;
  });
}

bool Store::markWritten(const OutboxItem& item, const std::string& strTarget) {
  return pool_->write([&](soci::session& sql) {
    return changedBy(
               (sql.prepare << "UPDATE outbox SET state = 'written', target = :t, "
                               "written = :w WHERE id = :i AND due = :l AND state = 'waiting'",
                soci::use(strTarget), soci::use(item.lngWritten), soci::use(item.strId),
                soci::use(item.lngLease))) == 1;
  });
}

bool Store::markDelivered(const OutboxItem& item, const std::string& strTarget) {
  return pool_->write([&](soci::session& sql) {
    const std::string strNow = momentText();
    return changedBy(
               (sql.prepare << "UPDATE outbox SET state = 'delivered', delivered = :t, target = :g "
                               "WHERE id = :i AND due = :l AND state <> 'delivered'",
                soci::use(strNow), soci::use(strTarget), soci::use(item.strId),
                soci::use(item.lngLease))) == 1;
  });
}

bool Store::markLost(const OutboxItem& item) {
  return pool_->write([&](soci::session& sql) {
    return changedBy((sql.prepare << "UPDATE outbox SET state = 'waiting' "
                                     "WHERE id = :i AND due = :l AND state = 'written'",
                      soci::use(item.strId), soci::use(item.lngLease))) == 1;
  });
}

bool Store::postpone(const OutboxItem& item, std::int64_t lngMilliseconds) {
  return pool_->write([&](soci::session& sql) {
    const std::int64_t lngDue = millisecondsNow() + lngMilliseconds;
    return changedBy((sql.prepare << "UPDATE outbox SET due = :d WHERE id = :i AND due = :l "
                                     "AND state <> 'delivered'",
                      soci::use(lngDue), soci::use(item.strId), soci::use(item.lngLease))) == 1;
  });
}

std::int64_t Store::waiting() {
  return pool_->with([](soci::session& sql) {
    std::int64_t lngWaiting = 0;
    sql << "SELECT COUNT(*) FROM outbox WHERE state <> 'delivered'", soci::into(lngWaiting);
    return lngWaiting;
  });
}
