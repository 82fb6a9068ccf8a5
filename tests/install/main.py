"""Submits one form of a deployment: main.py DEPLOYMENT FORM."""

import pathlib
import sys

import varnel_xml

with varnel_xml.Deployment(sys.argv[1]) as deployment:
    outcome = deployment.run(pathlib.Path(sys.argv[2]).read_bytes().rstrip(b"\r\n"))
print("verdict:", outcome.verdict)
for violation in outcome.violations:
    print(violation["questionText"], violation["message"])
sys.exit(0 if outcome.verdict == "valid" else 1)
