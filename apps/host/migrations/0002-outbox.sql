CREATE TABLE outbox (
  id VARCHAR(32) PRIMARY KEY REFERENCES message (id),
  target TEXT NOT NULL,
  state VARCHAR(16) NOT NULL,
  attempts BIGINT NOT NULL,
  due BIGINT NOT NULL,
  delivered VARCHAR(32) NOT NULL
);

CREATE INDEX outbox_due ON outbox (state, due);
