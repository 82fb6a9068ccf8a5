# shellcheck shell=bash
# Run in a clean chroot with the packages, this folder and the example in /srv: what each package
# brings works with what it depends on, and with nothing else.
set -euo pipefail
cd /srv
quietly() {
  "$@" >log 2>&1 || {
    cat log >&2
    exit 1
  }
}
quietly apt-get -q update

quietly apt-get -q install -y --no-install-recommends ./varnel-xml-tools_*.deb
varnel-xml build --deployment inspection --form inspection/complete.form --submit --validate \
  --report --strict --send-out message.xml --result result.json
grep -q '"verdict": "valid"' result.json
varnel-xml document --deployment inspection --format html >document.html
echo "varnel-xml-tools: a form was submitted, its message is valid, and a page was made"

quietly apt-get -q install -y --no-install-recommends ./libvarnel-xml-creation*.deb g++ pkg-config
for kind in c c++; do
  compiler=(gcc -std=c99 install/main.c)
  [[ $kind == c ]] || compiler=(g++ -std=c++20 install/main.cpp)
  # shellcheck disable=SC2046
  "${compiler[@]}" -o "with-$kind" $(pkg-config --cflags --libs varnel-xml-creation)
done
./with-c inspection inspection/complete.form
./with-c++
ldconfig -p >cached
quietly grep -q "libvarnel-xml-creation[.]so[.]" cached
echo "libvarnel-xml-creation: programs in C and C++ were built and run"

quietly apt-get -q install -y --no-install-recommends ./python3-varnel-xml_*.deb
python3 install/main.py inspection inspection/complete.form
echo "python3-varnel-xml: the module ran a submission"

quietly apt-get -q install -y --no-install-recommends ./varnel-xml-host_*.deb
varnel-xml-host --deployment inspection --listen 127.0.0.1:0 >address 2>host.log &
host=$!
for _ in {1..100}; do
  if [[ -s address ]]; then break; fi
  sleep 0.1
done
quietly grep -q '^http://127.0.0.1:' address
kill "$host"
wait "$host"
[[ -s inspection.sqlite ]]
echo "varnel-xml-host: it listened, kept its store, and ended when it was told to"
