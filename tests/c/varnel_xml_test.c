#include "varnel_xml.h"

#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/*
 * Run as: c_tests EXAMPLE NAME...           the tests with these names
 *         c_tests EXAMPLE --write FORM      one form of the example; its outcome into three files
 */

static const char* example;
static int failures;

#define EXPECT(condition)                                                           \
  do {                                                                              \
    if (!(condition)) {                                                             \
      fprintf(stderr, "%s:%d: %s does not hold\n", __FILE__, __LINE__, #condition); \
      ++failures;                                                                   \
    }                                                                               \
  } while (0)

#define TEST(name) static void name(void)

/* The bytes of a file of the example without the line end behind them. */
static char* form_of(const char* name, size_t* length) {
  char path[1024];
  static char body[65536];
  snprintf(path, sizeof path, "%s/%s", example, name);
  FILE* const file = fopen(path, "rb");
  *length = file != NULL ? fread(body, 1, sizeof body, file) : 0;
  if (file != NULL) fclose(file);
  EXPECT(*length > 0 && *length < sizeof body);
  while (*length > 0 && body[*length - 1] == '\n') --*length;
  return body;
}

static varnel_xml_deployment* opened(void) {
  const varnel_xml_option now = {"now", "2025-10-14T12:05:00"};
  varnel_xml_settings settings = VARNEL_XML_SETTINGS_INIT;
  varnel_xml_deployment* deployment = NULL;
  varnel_xml_error error = VARNEL_XML_ERROR_INIT;
  settings.options = &now;
  settings.option_count = 1;
  EXPECT(varnel_xml_open(example, &settings, &deployment, &error) == VARNEL_XML_OK);
  EXPECT(strcmp(error.message, "") == 0);
  return deployment;
}

static varnel_xml_submission submission_of(const char* name) {
  varnel_xml_submission submission = VARNEL_XML_SUBMISSION_INIT;
  submission.form = form_of(name, &submission.form_length);
  submission.submit = 1;
  submission.validate = 1;
  submission.report = 1;
  return submission;
}

/* The result of a run that takes place. */
static varnel_xml_result* run(varnel_xml_deployment* deployment,
                              const varnel_xml_submission* submission) {
  varnel_xml_result* result = NULL;
  varnel_xml_error error = VARNEL_XML_ERROR_INIT;
  EXPECT(varnel_xml_run(deployment, submission, &result, &error) == VARNEL_XML_OK);
  if (error.message[0] != '\0') fprintf(stderr, "%s\n", error.message);
  return result;
}

TEST(TellsTheOutcomeOfASubmission) {
  varnel_xml_deployment* const deployment = opened();
  varnel_xml_submission submission = submission_of("complete.form");
  varnel_xml_result* result = run(deployment, &submission);
  size_t length = 0;
  EXPECT(varnel_xml_error_code(result) == 0);
  EXPECT(strcmp(varnel_xml_verdict(result), "valid") == 0);
  EXPECT(strstr(varnel_xml_json(result, &length), "\"success\": true") != NULL);
  EXPECT(length == strlen(varnel_xml_json(result, NULL)));
  EXPECT(strncmp(varnel_xml_message(result, &length), "<?xml", 5) == 0);
  EXPECT(length == strlen(varnel_xml_message(result, NULL)));
  EXPECT(strstr(varnel_xml_park(result, &length), "<prtobjct ") != NULL);
  EXPECT(length == strlen(varnel_xml_park(result, NULL)));
  varnel_xml_free(result);

  submission = submission_of("faulty.form");
  result = run(deployment, &submission);
  EXPECT(varnel_xml_error_code(result) == -2147210423);
  EXPECT(strcmp(varnel_xml_verdict(result), "invalid") == 0);
  EXPECT(strstr(varnel_xml_json(result, NULL), "\"violations\": [\n") != NULL);
  varnel_xml_close(deployment);
  EXPECT(varnel_xml_message(result, NULL) != NULL); /* a result outlives its deployment */
  varnel_xml_free(result);
}

TEST(ParksWithoutAMessageOrReport) {
  varnel_xml_deployment* const deployment = opened();
  varnel_xml_submission submission = submission_of("draft.form");
  submission.submit = submission.validate = submission.report = 0;
  varnel_xml_result* const result = run(deployment, &submission);
  size_t length = 1;
  EXPECT(varnel_xml_error_code(result) == 0);
  EXPECT(varnel_xml_park(result, NULL) != NULL);
  EXPECT(varnel_xml_message(result, &length) == NULL && length == 0);
  EXPECT(varnel_xml_verdict(result) == NULL);
  EXPECT(strstr(varnel_xml_json(result, NULL), "\"report\"") == NULL);
  varnel_xml_free(result);
  varnel_xml_close(deployment);
}

TEST(TakesAnObjectListFromMemory) {
  const char* const list =
      "<?xml version=\"1.0\"?><prtobjcts><prtobjct id=\"q\" objecttype=\"field\" type=\"text\""
      " dynamic=\"false\"/><hdnflds/></prtobjcts>";
  varnel_xml_deployment* const deployment = opened();
  varnel_xml_submission submission = VARNEL_XML_SUBMISSION_INIT;
  submission.form = "q=an+answer";
  submission.form_length = strlen(submission.form);
  submission.object_list = list;
  submission.object_list_length = strlen(list);
  varnel_xml_result* result = run(deployment, &submission);
  EXPECT(strstr(varnel_xml_park(result, NULL), "value=\"an answer\"") != NULL);
  varnel_xml_free(result);

  submission.object_list_length -= 1;
  varnel_xml_error error = VARNEL_XML_ERROR_INIT;
  EXPECT(varnel_xml_run(deployment, &submission, &result, &error) == VARNEL_XML_CANNOT_USE);
  EXPECT(result == NULL);
  EXPECT(strncmp(error.message, "the object list: ", 17) == 0);
  varnel_xml_close(deployment);
}

TEST(NeedsNoFolder) {
  const varnel_xml_option options[] = {{"template", "none.xml"}, {"submit", "false"}};
  varnel_xml_settings settings = VARNEL_XML_SETTINGS_INIT;
  varnel_xml_deployment* deployment = NULL;
  settings.options = options;
  settings.option_count = 2;
  EXPECT(varnel_xml_open(NULL, &settings, &deployment, NULL) == VARNEL_XML_OK);
  const varnel_xml_submission submission = VARNEL_XML_SUBMISSION_INIT;
  varnel_xml_result* const result = run(deployment, &submission);
  EXPECT(strstr(varnel_xml_json(result, NULL), "PARK_XML_OBJ_MISSING") != NULL);
  EXPECT(varnel_xml_park(result, NULL) == NULL);
  varnel_xml_free(result);
  varnel_xml_close(deployment);
}

struct counted {
  size_t lines;
  size_t bytes;
};

static void count_line(void* context, const char* line, size_t length) {
  struct counted* const counted = context;
  ++counted->lines;
  counted->bytes += length;
  EXPECT(length > 2 && memcmp(line + length - 2, "\r\n", 2) == 0);
}

/* The code of a run of the complete form within these limits. */
static int32_t code_within(size_t run_nodes, size_t run_bytes, const char* told) {
  varnel_xml_settings settings = VARNEL_XML_SETTINGS_INIT;
  varnel_xml_deployment* deployment = NULL;
  varnel_xml_submission submission = submission_of("complete.form");
  settings.run_nodes = run_nodes;
  settings.run_bytes = run_bytes;
  EXPECT(varnel_xml_open(example, &settings, &deployment, NULL) == VARNEL_XML_OK);
  varnel_xml_result* const result = run(deployment, &submission);
  const int32_t code = varnel_xml_error_code(result);
  EXPECT(strstr(varnel_xml_json(result, NULL), told) != NULL);
  varnel_xml_free(result);
  varnel_xml_close(deployment);
  return code;
}

TEST(BoundsTheDocumentsOfARunTogether) {
  const int32_t beyond = -2147467259;
  EXPECT(code_within(0, 0, "\"verdict\": \"valid\"") == 0);
  EXPECT(code_within(100000, 64 << 20, "\"verdict\": \"valid\"") == 0);
  EXPECT(code_within(100, 0, "The documents of the run have more nodes than they may.") == beyond);
  EXPECT(code_within(0, 4096, "The documents of the run take more memory than they may.") ==
         beyond);
}

/* A caller that was compiled before these limits were there has a shorter structure. */
TEST(TakesTheStructuresOfItsFirstVersion) {
  varnel_xml_settings settings = VARNEL_XML_SETTINGS_INIT;
  varnel_xml_deployment* deployment = NULL;
  varnel_xml_submission submission = submission_of("complete.form");
  settings.size = offsetof(varnel_xml_settings, run_nodes);
  settings.run_nodes = 1; /* behind what the caller has */
  EXPECT(varnel_xml_open(example, &settings, &deployment, NULL) == VARNEL_XML_OK);
  varnel_xml_result* const result = run(deployment, &submission);
  EXPECT(varnel_xml_error_code(result) == 0);
  varnel_xml_free(result);
  varnel_xml_close(deployment);
  settings.size -= 1;
  EXPECT(varnel_xml_open(example, &settings, &deployment, NULL) == VARNEL_XML_BAD_ARGUMENT);
}

TEST(ReplacesWhatNoDocumentCanHoldOnRequest) {
  static const char objects[] =
      "<?xml version='1.0'?><prtobjcts><prtobjct id='q' objecttype='field' type='text'"
      " dynamic='false'/><prtobjct id='r' objecttype='field' type='text' dynamic='false'/>"
      "<hdnflds/></prtobjcts>";
  varnel_xml_deployment* const deployment = opened();
  varnel_xml_submission submission = VARNEL_XML_SUBMISSION_INIT;
  submission.form = "q=a%0Bb&r=typed";
  submission.form_length = strlen(submission.form);
  submission.object_list = objects;
  submission.object_list_length = sizeof objects - 1;
  varnel_xml_result* result = run(deployment, &submission);
  EXPECT(varnel_xml_error_code(result) != 0);
  EXPECT(strstr(varnel_xml_park(result, NULL), "typed") == NULL);
  EXPECT(varnel_xml_unreadable(result) == 0);
  varnel_xml_free(result);

  submission.replace_unstorable = 1;
  submission.size = offsetof(varnel_xml_submission, replace_unstorable); /* the first version's */
  result = run(deployment, &submission);
  EXPECT(varnel_xml_error_code(result) != 0);
  varnel_xml_free(result);

  submission.size = sizeof submission;
  submission.reserved = 1;
  EXPECT(varnel_xml_run(deployment, &submission, &result, NULL) == VARNEL_XML_BAD_ARGUMENT);
  submission.reserved = 0;
  result = run(deployment, &submission);
  EXPECT(varnel_xml_error_code(result) == 0);
  EXPECT(strstr(varnel_xml_park(result, NULL),
                "value=\"a\xEF\xBF\xBD"
                "b\"") != NULL);
  EXPECT(strstr(varnel_xml_park(result, NULL), "typed") != NULL);
  EXPECT(varnel_xml_unreadable(result) == 1);
  varnel_xml_free(result);
  varnel_xml_close(deployment);
}

TEST(CallsTheTraceForEachLine) {
  struct counted counted = {0, 0};
  varnel_xml_deployment* const deployment = opened();
  varnel_xml_submission submission = submission_of("draft.form");
  submission.trace = count_line;
  submission.trace_context = &counted;
  varnel_xml_free(run(deployment, &submission));
  EXPECT(counted.lines > 12 && counted.bytes > 1000);
  varnel_xml_close(deployment);
}

TEST(RefusesAWrongCall) {
  varnel_xml_error error = VARNEL_XML_ERROR_INIT;
  varnel_xml_deployment* const deployment = opened();
  varnel_xml_submission submission = submission_of("draft.form");
  varnel_xml_result* result = (varnel_xml_result*)&error;

  EXPECT(varnel_xml_open(example, NULL, NULL, &error) == VARNEL_XML_BAD_ARGUMENT);
  EXPECT(strcmp(error.message, "deployment is NULL") == 0);
  EXPECT(varnel_xml_run(NULL, &submission, &result, &error) == VARNEL_XML_BAD_ARGUMENT);
  EXPECT(result == NULL);
  EXPECT(varnel_xml_run(deployment, NULL, &result, &error) == VARNEL_XML_BAD_ARGUMENT);
  EXPECT(varnel_xml_run(deployment, &submission, NULL, NULL) == VARNEL_XML_BAD_ARGUMENT);

  submission.size = offsetof(varnel_xml_submission, replace_unstorable) - 1;
  EXPECT(varnel_xml_run(deployment, &submission, &result, &error) == VARNEL_XML_BAD_ARGUMENT);
  EXPECT(strcmp(error.message, "the size of a structure is too small") == 0);
  submission.size = sizeof submission;
  submission.form = NULL;
  EXPECT(varnel_xml_run(deployment, &submission, &result, &error) == VARNEL_XML_BAD_ARGUMENT);
  varnel_xml_close(deployment);

  varnel_xml_settings settings = VARNEL_XML_SETTINGS_INIT;
  varnel_xml_deployment* none = NULL;
  settings.option_count = 1;
  EXPECT(varnel_xml_open(example, &settings, &none, NULL) == VARNEL_XML_BAD_ARGUMENT);
  const varnel_xml_option without_value = {"template", NULL};
  settings.options = &without_value;
  EXPECT(varnel_xml_open(example, &settings, &none, NULL) == VARNEL_XML_BAD_ARGUMENT);
  EXPECT(none == NULL);
}

/* A caller that was compiled with a later version has longer structures. */
TEST(TakesALongerStructureUnlessItAsksForMore) {
  struct {
    varnel_xml_settings known;
    int32_t more[4];
  } later = {VARNEL_XML_SETTINGS_INIT, {0, 0, 0, 0}};
  varnel_xml_deployment* deployment = NULL;
  later.known.size = sizeof later;
  EXPECT(varnel_xml_open(example, &later.known, &deployment, NULL) == VARNEL_XML_OK);
  varnel_xml_close(deployment);
  later.more[2] = 1;
  EXPECT(varnel_xml_open(example, &later.known, &deployment, NULL) == VARNEL_XML_BAD_ARGUMENT);
  EXPECT(deployment == NULL);
}

TEST(TellsWhyADeploymentCannotBeOpened) {
  varnel_xml_deployment* deployment = NULL;
  varnel_xml_error error = VARNEL_XML_ERROR_INIT;
  EXPECT(varnel_xml_open("/nowhere", NULL, &deployment, &error) == VARNEL_XML_CANNOT_USE);
  EXPECT(deployment == NULL);
  EXPECT(strcmp(error.message,
                "/nowhere/deployment.json: The system cannot locate the object specified.") == 0);

  const varnel_xml_option option = {"templ\xC3\xA9te", "x"};
  varnel_xml_settings settings = VARNEL_XML_SETTINGS_INIT;
  settings.options = &option;
  settings.option_count = 1;
  EXPECT(varnel_xml_open(example, &settings, &deployment, &error) == VARNEL_XML_CANNOT_USE);
  EXPECT(strcmp(error.message, "\"templ\xC3\xA9te\" is an unknown key") == 0);

  /* Cut to the size that the caller has, and never inside a character. */
  const size_t begin = offsetof(varnel_xml_error, message);
  memset(&error, '#', sizeof error);
  error.size = begin + 8;
  EXPECT(varnel_xml_open(example, &settings, &deployment, &error) == VARNEL_XML_CANNOT_USE);
  EXPECT(strcmp(error.message, "\"templ") == 0);
  EXPECT(error.message[8] == '#');
  error.size = begin;
  EXPECT(varnel_xml_open(example, &settings, &deployment, &error) == VARNEL_XML_CANNOT_USE);
  EXPECT(strcmp(error.message, "\"templ") == 0);
}

TEST(TakesNothingForAHandle) {
  size_t length = 1;
  varnel_xml_close(NULL);
  varnel_xml_free(NULL);
  EXPECT(varnel_xml_error_code(NULL) != 0);
  EXPECT(varnel_xml_json(NULL, &length) == NULL && length == 0);
  EXPECT(varnel_xml_park(NULL, NULL) == NULL);
  EXPECT(varnel_xml_message(NULL, NULL) == NULL);
  EXPECT(varnel_xml_verdict(NULL) == NULL);
  EXPECT(strncmp(varnel_xml_version(), "16.", 3) == 0);
  EXPECT(strcmp(varnel_xml_status_name(VARNEL_XML_CANNOT_USE), "cannot use") == 0);
}

enum { THREADS = 4, RUNS = 5 };

struct work {
  varnel_xml_deployment* deployment;
  varnel_xml_submission submission;
  const char* expected;
  int wrong;
};

static void* run_often(void* context) {
  struct work* const work = context;
  for (int i = 0; i < RUNS; ++i) {
    varnel_xml_result* result = NULL;
    if (varnel_xml_run(work->deployment, &work->submission, &result, NULL) != VARNEL_XML_OK ||
        strcmp(varnel_xml_message(result, NULL), work->expected) != 0) {
      ++work->wrong;
    }
    varnel_xml_free(result);
  }
  return NULL;
}

TEST(RunsFormsOfOneDeploymentOnManyThreads) {
  varnel_xml_deployment* const deployment = opened();
  const varnel_xml_submission submission = submission_of("complete.form");
  varnel_xml_result* const alone = run(deployment, &submission);
  pthread_t threads[THREADS];
  struct work work[THREADS];
  for (int i = 0; i < THREADS; ++i) {
    work[i] = (struct work){deployment, submission, varnel_xml_message(alone, NULL), 0};
    EXPECT(pthread_create(&threads[i], NULL, run_often, &work[i]) == 0);
  }
  for (int i = 0; i < THREADS; ++i) {
    EXPECT(pthread_join(threads[i], NULL) == 0);
    EXPECT(work[i].wrong == 0);
  }
  varnel_xml_free(alone);
  varnel_xml_close(deployment);
}

static void write_text(const char* name, const char* text, size_t length) {
  if (text == NULL) return;
  FILE* const file = fopen(name, "wb");
  EXPECT(file != NULL && fwrite(text, 1, length, file) == length);
  if (file != NULL) EXPECT(fclose(file) == 0);
}

static void write_outcome(const char* form) {
  size_t length = 0;
  varnel_xml_deployment* const deployment = opened();
  const varnel_xml_submission submission = submission_of(form);
  varnel_xml_result* const result = run(deployment, &submission);
  const char* text = varnel_xml_park(result, &length);
  write_text("park.xml", text, length);
  text = varnel_xml_message(result, &length);
  write_text("send.xml", text, length);
  text = varnel_xml_json(result, &length);
  write_text("result.json", text, length);
  varnel_xml_free(result);
  varnel_xml_close(deployment);
}

int main(int argc, char** argv) {
  static const struct {
    const char* name;
    void (*run)(void);
  } tests[] = {
#define NAMED(name) {#name, name}
      NAMED(TellsTheOutcomeOfASubmission),
      NAMED(ParksWithoutAMessageOrReport),
      NAMED(TakesAnObjectListFromMemory),
      NAMED(NeedsNoFolder),
      NAMED(BoundsTheDocumentsOfARunTogether),
      NAMED(TakesTheStructuresOfItsFirstVersion),
      NAMED(ReplacesWhatNoDocumentCanHoldOnRequest),
      NAMED(CallsTheTraceForEachLine),
      NAMED(RefusesAWrongCall),
      NAMED(TakesALongerStructureUnlessItAsksForMore),
      NAMED(TellsWhyADeploymentCannotBeOpened),
      NAMED(TakesNothingForAHandle),
      NAMED(RunsFormsOfOneDeploymentOnManyThreads),
  };
  if (argc < 3) return 2;
  example = argv[1];
  if (argc == 4 && strcmp(argv[2], "--write") == 0) {
    write_outcome(argv[3]);
    return failures != 0;
  }
  for (int i = 2; i < argc; ++i) {
    int found = 0;
    for (size_t at = 0; at < sizeof tests / sizeof tests[0]; ++at) {
      if (strcmp(tests[at].name, argv[i]) != 0) continue;
      tests[at].run();
      found = 1;
    }
    EXPECT(found);
  }
  return failures != 0;
}
