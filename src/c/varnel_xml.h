#ifndef VARNEL_XML_H
#define VARNEL_XML_H

#include <stddef.h>
#include <stdint.h>

/*
 * The library for programs in C and for languages that call C. A deployment is opened by its
 * folder; each submission of its form gives a result, which tells all that `varnel-xml build` does:
 * the result as JSON, the parked form and the message as bytes.
 *
 * Memory. Nothing is allocated for the caller to free, nor freed for it: a text belongs to the
 * handle that it was asked of and lives as long; it ends with a NUL that its length does not count.
 * What a call is given is read before it returns and not kept. Handles are given back by
 * varnel_xml_close and varnel_xml_free, which do nothing for NULL. A result does not need its
 * deployment.
 *
 * Text is UTF-8. Folders, files and values of options are texts that end with a NUL.
 *
 * Structures begin with their size, which the caller sets with the ..._INIT macros; the rest is 0
 * then. Later versions add members at the end only. A size that is too small, or a member that this
 * version does not know and that is not 0, is VARNEL_XML_BAD_ARGUMENT.
 *
 * Threads. Any number of them may run forms of one deployment at once; each run works on a copy of
 * the object list of its own. A result is used by one thread at a time, or by any number that only
 * read. A handle is given back when nobody uses it any more.
 *
 * No call raises an exception or ends the program, whatever the files and forms hold.
 */

#if defined(__GNUC__)
#define VARNEL_XML_API __attribute__((visibility("default")))
#else
#define VARNEL_XML_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef enum varnel_xml_status {
  VARNEL_XML_OK = 0,            /* it was done; for a run: there is a result, good or bad */
  VARNEL_XML_BAD_ARGUMENT = 1,  /* the call was wrong */
  VARNEL_XML_CANNOT_USE = 2,    /* a file or an option of the deployment cannot be used */
  VARNEL_XML_OUT_OF_MEMORY = 3, /* try again when there is more */
  VARNEL_XML_INTERNAL_ERROR = 4 /* what nobody expected */
} varnel_xml_status;

/* Why a call failed: one line, cut where it does not fit; empty when it did not fail. */
typedef struct varnel_xml_error {
  size_t size;
  char message[504];
} varnel_xml_error;
#define VARNEL_XML_ERROR_INIT \
  { sizeof(varnel_xml_error), "" }

typedef struct varnel_xml_deployment varnel_xml_deployment;
typedef struct varnel_xml_result varnel_xml_result;

/* A key of deployment.json and its value; a flag is "true" or "false". */
typedef struct varnel_xml_option {
  const char* key;
  const char* value;
} varnel_xml_option;

typedef struct varnel_xml_settings {
  size_t size;
  const varnel_xml_option* options; /* they win over those of deployment.json; file names in them
                                       start at the working directory */
  size_t option_count;
  /* Of configuration that is kept between runs; 0: 256 MiB. Beside it memory of documents of ended
     runs is kept for those of the next, a sixteenth of this at most. */
  size_t cache_bytes;
  size_t document_bytes; /* a longer document is refused; 0: 64 MiB */
  /* What the documents of one run may have together. A run that would have more
     fails with VARNEL_XML_OK and the code -2147467259; in the check of the message there is then
     no verdict. */
  size_t run_nodes; /* attributes and texts included; 0: 6,000,000 */
  size_t run_bytes; /* of memory; 0: 1 GiB */
} varnel_xml_settings;
#define VARNEL_XML_SETTINGS_INIT \
  { sizeof(varnel_xml_settings), NULL, 0, 0, 0, 0, 0 }

/* One submission. What deployment.json says of "form", "submit" and "validate" does not count. */
typedef struct varnel_xml_submission {
  size_t size;
  const char* form; /* as a browser posts it, application/x-www-form-urlencoded; NULL: empty */
  size_t form_length;
  int32_t submit;          /* not 0: build the message too */
  int32_t validate;        /* not 0: ask for the schema's verdict on the message */
  int32_t report;          /* not 0: the result has the key "report" */
  int32_t journal;         /* not 0: the report has the key "journal" */
  const char* object_list; /* XML, used in place of the deployment's own; NULL: that one. Always
                              the form's own list, never a parked form */
  size_t object_list_length;
  void (*trace)(void* context, const char* line, size_t length); /* gets each line of the trace,
                              what people answered included, on the thread of the run; NULL: none */
  void* trace_context;
  int32_t replace_unstorable; /* not 0: U+FFFD takes the place of each character in an answer that
                              no XML document can hold, such as U+000B. Else the run fails at the
                              first of them, and what it parked ends there */
  int32_t reserved;           /* 0 */
} varnel_xml_submission;
#define VARNEL_XML_SUBMISSION_INIT \
  { sizeof(varnel_xml_submission), NULL, 0, 0, 0, 0, 0, NULL, 0, NULL, NULL, 0, 0 }

/* "16.0.0" */
VARNEL_XML_API const char* varnel_xml_version(void);

/* The name of a status, such as "cannot use"; "unknown" for a number that is none. */
VARNEL_XML_API const char* varnel_xml_status_name(varnel_xml_status status);

/*
 * Opens the deployment in a folder; NULL for a deployment made of options alone. settings may be
 * NULL, and so may every error. *deployment is set to NULL when it fails. deployment.json is read
 * here; the files that it names are read by the first run and again when they have changed.
 */
VARNEL_XML_API varnel_xml_status varnel_xml_open(const char* folder,
                                                 const varnel_xml_settings* settings,
                                                 varnel_xml_deployment** deployment,
                                                 varnel_xml_error* error);

VARNEL_XML_API void varnel_xml_close(varnel_xml_deployment* deployment);

/* Runs one submission. *result is set to NULL when there is none. */
VARNEL_XML_API varnel_xml_status varnel_xml_run(varnel_xml_deployment* deployment,
                                                const varnel_xml_submission* submission,
                                                varnel_xml_result** result,
                                                varnel_xml_error* error);

VARNEL_XML_API void varnel_xml_free(varnel_xml_result* result);

/*
 * What a result tells. length may be NULL. For a NULL result every text is NULL, every number 0 and
 * the code that of an internal error.
 */

/* 0 when the run succeeded, else one of the codes of docs/errors.md or a run-time error's number.
 */
VARNEL_XML_API int32_t varnel_xml_error_code(const varnel_xml_result* result);

/* How many fields of the form have U+FFFD in their value, which stands for what did not arrive:
   bytes that are not UTF-8, and what was replaced. Such a form can be kept and should not be sent:
   nobody typed that. */
VARNEL_XML_API int32_t varnel_xml_unreadable(const varnel_xml_result* result);

/* One JSON object and a line end, with the keys that `varnel-xml build` writes. */
VARNEL_XML_API const char* varnel_xml_json(const varnel_xml_result* result, size_t* length);

/* The form with its answers, to be stored; NULL when there was no object list. */
VARNEL_XML_API const char* varnel_xml_park(const varnel_xml_result* result, size_t* length);

/* The message; NULL when the run made none. */
VARNEL_XML_API const char* varnel_xml_message(const varnel_xml_result* result, size_t* length);

/* "not-asked", "valid", "invalid" or "not-checked"; NULL when no report was asked for. */
VARNEL_XML_API const char* varnel_xml_verdict(const varnel_xml_result* result);

#ifdef __cplusplus
}
#endif

#endif
