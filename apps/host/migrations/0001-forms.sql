CREATE TABLE setting (
  name VARCHAR(64) PRIMARY KEY,
  value TEXT NOT NULL
);

CREATE TABLE form (
  id VARCHAR(32) PRIMARY KEY,
  deployment TEXT NOT NULL,
  state VARCHAR(16) NOT NULL,
  version BIGINT NOT NULL,
  park TEXT NOT NULL,
  row_counts TEXT NOT NULL,
  result TEXT NOT NULL,
  created VARCHAR(32) NOT NULL,
  changed VARCHAR(32) NOT NULL
);

CREATE TABLE message (
  id VARCHAR(32) PRIMARY KEY REFERENCES form (id),
  accepted VARCHAR(32) NOT NULL,
  message TEXT NOT NULL
);
