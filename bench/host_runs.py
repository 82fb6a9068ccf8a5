"""The same host as HostRuns.cpp, in Python: host_runs.py DEPLOYMENT FORM COUNT"""

import pathlib
import sys

import varnel_xml

form = pathlib.Path(sys.argv[2]).read_bytes()
size = 0
with varnel_xml.Deployment(sys.argv[1]) as deployment:
    for _ in range(int(sys.argv[3])):
        outcome = deployment.run(form)
        if outcome.verdict != "valid":
            sys.exit(1)
        size += len(outcome.park) + len(outcome.message)
print(size, "bytes")
