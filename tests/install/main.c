#include <stdio.h>
#include <string.h>

#include "varnel_xml.h"

/* Submits one form of a deployment: main DEPLOYMENT FORM. Ends with 0 when the message is valid. */
int main(int argc, char** argv) {
  static char form[65536];
  FILE* const file = argc == 3 ? fopen(argv[2], "rb") : NULL;
  if (file == NULL) return 2;
  varnel_xml_submission submission = VARNEL_XML_SUBMISSION_INIT;
  submission.form = form;
  submission.form_length = fread(form, 1, sizeof form, file);
  fclose(file);
  while (submission.form_length > 0 && form[submission.form_length - 1] == '\n') {
    --submission.form_length;
  }
  submission.submit = submission.validate = submission.report = 1;

  varnel_xml_deployment* deployment = NULL;
  varnel_xml_result* result = NULL;
  varnel_xml_error error = VARNEL_XML_ERROR_INIT;
  if (varnel_xml_open(argv[1], NULL, &deployment, &error) != VARNEL_XML_OK ||
      varnel_xml_run(deployment, &submission, &result, &error) != VARNEL_XML_OK) {
    fprintf(stderr, "%s\n", error.message);
    varnel_xml_close(deployment);
    return 2;
  }
  const int valid = strcmp(varnel_xml_verdict(result), "valid") == 0;
  printf("verdict: %s\n", varnel_xml_verdict(result));
  varnel_xml_free(result);
  varnel_xml_close(deployment);
  return valid ? 0 : 1;
}
