#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

/// The store cannot be reached, is locked or is full. Nothing of what was asked for was done, or,
/// when the connection broke while a transaction was being committed, all of it.
class StoreProblem : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct StoredForm {
  std::string strId;
  std::string strDeployment;
  std::string strState;  // "parked", "refused" or "accepted"
  std::int64_t lngVersion = 0;
  std::string strParkXml;
  std::string strRowCounts;  // what the parked form does not tell, as JSON
  std::string strResult;     // of the last run, as JSON
  std::string strCreated;
  std::string strChanged;
};

struct StoredMessage {
  std::string strAccepted;
  std::string strXml;
  std::string strTarget;  // empty: it was not to be sent anywhere
  std::string strDelivered;
};

struct OutboxItem {
  std::string strId;
  std::string strState;   // "waiting" or "written"
  std::string strTarget;  // of one that is "written": where to; else where it was to go at first
  std::int64_t lngAttempts = 0;  // this one included
  std::int64_t lngWritten = 0;  // of one that is "written": in which attempt; 0: an earlier version
  std::int64_t lngLease = 0;    // who holds the item knows this number
  std::string strMessage;
};

/// What outlives the program: forms, messages and the outbox, in SQLite or PostgreSQL. Any number
/// of hosts may work on one store. All members raise StoreProblem; each is one transaction, and a
/// connection that broke is opened again by the next.
class Store {
 public:
  /// Opens `strStore` and brings its tables up to date. Raises CannotRun for one that cannot be
  /// used; StoreProblem also where another host is doing the same.
  Store(const std::string& strStore, std::size_t lngConnections);
  ~Store();

  /// The key that all hosts of this store sign with.
  const std::string& key() const { return strKey_; }

  void ping();
  void create(const StoredForm& form);
  std::optional<StoredForm> find(const std::string& strId);

  /// Replaces the form when its version is still one less than that of `form` and it was not
  /// accepted; else false and nothing is done. With `strMessage` it becomes accepted, and the
  /// message goes into the store and, with a target, into the outbox.
  bool replace(const StoredForm& form);
  bool accept(const StoredForm& form, const std::string& strMessage, const std::string& strTarget);

  std::optional<StoredMessage> message(const std::string& strId);

  /// Takes an item that is due; nobody else gets it before the lease of so many milliseconds ends.
  std::optional<OutboxItem> claim(std::int64_t lngLeaseMilliseconds);

  /// The next four are done only while the lease is held; else they say false. The first two also
  /// keep the target, which may not be the one that was meant when the form was accepted, and the
  /// first the attempt in `lngWritten`. The third is for an item that was written and is not where
  /// it was written to.
  bool markWritten(const OutboxItem& item, const std::string& strTarget);
  bool markDelivered(const OutboxItem& item, const std::string& strTarget);
  bool markLost(const OutboxItem& item);
  bool postpone(const OutboxItem& item, std::int64_t lngMilliseconds);
  std::int64_t waiting();

 private:
  struct Pool;

  std::unique_ptr<Pool> pool_;
  std::string strKey_;
};
