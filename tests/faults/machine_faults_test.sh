#!/usr/bin/env bash
# The machine's faults, made for real: machine_faults_test.sh PROGRAM EXAMPLE. Each case makes a working
# directory from EXAMPLE, runs PROGRAM in it and checks exit status, standard error and what the directory
# holds then. What needs root (another user, a small file system) is skipped, with a message, without it.
set -uo pipefail
readonly program=$1 example=$2
work=$(mktemp -d)
mounts=()
trap 'for m in "${mounts[@]}"; do umount "$m"; done; rm -rf "$work"' EXIT
chmod 755 "$work"
failures=0

complain() {
  echo "FAILED: $case: $*" >&2
  failures=$((failures + 1))
}

# A fresh working directory with an earlier store file; the case's faults are added to it.
begin() { # CASE
  case=$1
  chmod -R u+rwX "$work/run" 2>/dev/null
  rm -rf "$work/run"
  cp -r "$example" "$work/run"
  cd "$work/run" || exit 1
  echo "earlier" >fort.3
}

run() { # [PREFIX-COMMAND]...
  status=0
  "$@" "$program" >"$work/listing" 2>"$work/messages" || status=$?
}

# One line says what failed; findings may stand before it.
expect_fault() { # NAME REASON
  [[ $status == 2 ]] || complain "exit status $status"
  [[ $(tail -n 1 "$work/messages") == "varpre: $1: $2" ]] || complain "standard error: $(tail -n 3 "$work/messages")"
}

expect_no_rubbish() {
  local left
  left=$(find . -maxdepth 1 -name '.?*')
  [[ -z $left ]] || complain "left behind: $left"
}

expect_earlier_store() {
  [[ $(cat fort.3) == earlier ]] || complain "the earlier store file is gone"
  expect_no_rubbish
}

expect_new_store() {
  [[ $status == 0 ]] || complain "exit status $status: $(cat "$work/messages")"
  cmp -s fort.3 "$work/store" || complain "not the store file of a good run"
  expect_no_rubbish
}

begin "a good run"
started=${EPOCHREALTIME/[.,]/}
run
microseconds=$((${EPOCHREALTIME/[.,]/} - started))
cp fort.3 "$work/store"
expect_new_store
good_listing=$(cat "$work/listing")

# --- inputs ---------------------------------------------------------------------------------------

for name in MOLNEW fort.3 fort.10; do
  begin "$name is a directory"
  rm -rf "$name"
  mkdir "$name"
  run
  expect_fault "$name" "Is a directory"
  [[ $name == fort.3 ]] || expect_earlier_store
done

# The run goes on with what stands before the fault, to its abnormal end.
unreadable() { # NAME UNIT REASON
  run
  [[ $status == 0 ]] || complain "exit status $status"
  grep -q "^0     ERROR - DEFECT INPUT ON UNIT *$2\$" "$work/listing" || complain "no message in the listing"
  grep -q "^$1:.* error: the file cannot be read to its end: $3\$" "$work/messages" || complain "standard error: $(head -n 3 "$work/messages")"
  tail -n 1 "$work/messages" | grep -q 'store file incomplete' || complain "the store file is not called incomplete"
}

for name_and_unit in "INP 2" "MEC 4" "THERMO 9"; do
  read -r name unit <<<"$name_and_unit"
  begin "$name is a directory"
  rm -rf "$name"
  mkdir "$name"
  unreadable "$name" "$unit" "Is a directory"
done

begin "an input that opens and cannot be read"
ln -sf /proc/self/mem MEC
unreadable MEC 4 "Input/output error"

begin "a molecular database that opens and cannot be read"
ln -sf /proc/self/mem MOLNEW
run
expect_fault MOLNEW "Input/output error"
expect_earlier_store

for name in INP MOLNEW; do
  begin "a pipe as $name"
  rm "$name"
  mkfifo "$name"
  run timeout 20
  expect_fault "$name" "not a regular file"
  expect_earlier_store
done

begin "a device as THERMO"
ln -sf /dev/null THERMO
run
expect_fault THERMO "not a regular file"

begin "an input that is a link to nowhere"
ln -sf ../elsewhere INP
run
expect_fault INP "No such file or directory"
[[ ! -e ../elsewhere ]] || complain "the target of the link was created"
expect_earlier_store

begin "an input that is absent"
rm MOLNEW
run
[[ $status == 0 && -f MOLNEW && ! -s MOLNEW ]] || complain "not created empty (exit status $status)"
grep -q '^MOLNEW:.* warning: there was no file MOLNEW: it was created empty' "$work/messages" || complain "nothing said"

begin "a file larger than memory"
run prlimit --as=1000000000
if [[ $status == 0 ]] && echo earlier >fort.3 && truncate -s 1T THERMO 2>/dev/null; then
  run prlimit --as=1000000000
  expect_fault THERMO "Cannot allocate memory"
  expect_earlier_store
else
  echo "skipped: a file larger than memory (the program or the file system does not take the limits)"
fi

if ((EUID == 0)) && setpriv --reuid=65534 --clear-groups true 2>/dev/null; then
  as_nobody=(setpriv --reuid=65534 --clear-groups)
else
  as_nobody=(env)
fi
if ((EUID == 0)) && [[ ${as_nobody[0]} == env ]]; then
  echo "skipped: permissions (root, and no other user to be)"
elif ! "${as_nobody[@]}" test -x "$program"; then
  echo "skipped: permissions (the other user cannot reach the program)"
else
  begin "an input without permission"
  chmod 777 . fort.3
  chmod 000 MEC
  run "${as_nobody[@]}"
  expect_fault MEC "Permission denied"
  expect_earlier_store

  begin "a working directory that cannot be written"
  chmod 666 fort.3
  chmod 555 .
  run "${as_nobody[@]}"
  expect_fault fort.3 "Permission denied"
  expect_earlier_store

  begin "a write-protected store file"
  chmod 777 .
  chmod 444 fort.3
  run "${as_nobody[@]}"
  expect_fault fort.3 "Permission denied"
  expect_earlier_store
fi

# --- others who share the directory ----------------------------------------------------------------

if [[ ${as_nobody[0]} != env ]]; then
  begin "another user's store file with every permission bit"
  chmod 777 .
  chmod 6777 fort.3
  umask 022
  run "${as_nobody[@]}"
  expect_new_store
  [[ $(stat -c '%a %u' fort.3) == "644 65534" ]] || complain "mode and owner: $(stat -c '%a %u' fort.3)"

  begin "another user's link as store file"
  chmod 777 .
  echo precious >"$work/precious"
  chown 65534 "$work/precious"
  ln -sf "$work/precious" fort.3
  run "${as_nobody[@]}"
  expect_new_store
  [[ $(cat "$work/precious") == precious ]] || complain "the file behind the link is overwritten"

  begin "a directory that can be written but not read, four runs at once"
  chmod 733 .
  for _ in {1..10}; do
    for _ in {1..3}; do "${as_nobody[@]}" "$program" >/dev/null 2>&1 & done
    run "${as_nobody[@]}"
    wait
    expect_new_store
  done
  chmod 755 .
fi

begin "a lock on the directory that somebody holds"
if command -v flock >/dev/null; then
  flock . sleep 20 &
  run timeout 10
  expect_new_store
  kill %% 2>/dev/null
  wait 2>/dev/null
fi

begin "a copy that is a link to an input"
ln -s MEC fort.10
ln -s ../outside fort.11
run
expect_new_store
cmp -s MEC "$example/MEC" || complain "an input is overwritten"
[[ ! -L fort.10 && ! -L fort.11 && ! -e ../outside ]] || complain "a link is followed"

begin "a prepared link to another file as copy"
echo precious >"$work/precious"
ln -s "$work/precious" fort.10
run
expect_new_store
[[ $(cat "$work/precious") == precious ]] || complain "the file behind the link is overwritten"

begin "a hard link of an input as copy, and a directory of hard links"
ln INP fort.10
cp -al . ../linked
(cd ../linked && "$program" >/dev/null 2>&1) || complain "the run among hard links fails"
run
expect_new_store
cmp -s INP "$example/INP" && cmp -s ../linked/INP "$example/INP" || complain "an input is overwritten"
rm -rf ../linked

begin "an input that is a link to a copy"
mv INP fort.10
ln -s fort.10 INP
run
expect_fault fort.10 "the input INP is a link to it"
cmp -s fort.10 "$example/INP" || complain "an input is overwritten"

# --- the store file -------------------------------------------------------------------------------

begin "a link as store file"
mkdir elsewhere
mv fort.3 elsewhere/store
ln -s elsewhere/store fort.3
run
expect_new_store
[[ ! -L fort.3 && $(cat elsewhere/store) == earlier ]] || complain "the link is followed"

begin "the permissions of a new store file"
rm fort.3
(umask 027 && "$program" >/dev/null 2>&1)
[[ $(stat -c %a fort.3 fort.10 | sort -u) == 640 ]] || complain "not those of the umask: $(stat -c %a fort.3 fort.10)"

begin "several runs in one directory"
for _ in {1..20}; do
  "$program" >/dev/null 2>"$work/messages_of_another" &
  run
  wait $! || complain "another run ended with status $?: $(cat "$work/messages_of_another")"
  expect_new_store
done

begin "a limit on the size of files"
run prlimit --fsize=30000
expect_fault fort.3 "File too large"
expect_earlier_store

mkdir "$work/small"
if ((EUID == 0)) && mount -t tmpfs -o size=192k none "$work/small" 2>/dev/null; then
  mounts+=("$work/small")
  begin "a full disk"
  cp INP MEC THERMO MOLNEW fort.3 "$work/small"
  cd "$work/small" || exit 1
  head -c 1M /dev/zero >filling 2>/dev/null
  truncate -s -32768 filling
  run
  [[ $status == 2 ]] || complain "exit status $status"
  tail -n 1 "$work/messages" | grep -q '^varpre: fort.[0-9]*: No space left on device$' || complain "standard error: $(tail -n 1 "$work/messages")"
  expect_earlier_store
else
  echo "skipped: a full disk (mount is not permitted)"
fi

# --- memory ---------------------------------------------------------------------------------------

readonly little=(prlimit --as=100000000) # bytes
begin "empty lines in little memory"
run "${little[@]}"
if ((status == 0)); then
  for name in INP MEC THERMO; do
    cp "$example/$name" .
    head -c 1000000 /dev/zero | tr '\0' '\n' >>"$name"
    run "${little[@]}"
    expect_new_store
  done
else
  echo "skipped: empty lines in little memory (this build needs more for any run)"
fi

# --- standard descriptors -------------------------------------------------------------------------

for output in full closed; do
  begin "standard output $output, with something to tell"
  sed -i 's/^MECH/MECHX/; s/ bar/ Pa/' INP
  status=0
  if [[ $output == full ]]; then
    "$program" >/dev/full 2>"$work/messages" || status=$?
    expect_fault "standard output" "No space left on device"
  else
    "$program" >&- 2>"$work/messages" || status=$?
    expect_fault "standard output" "Bad file descriptor"
  fi
  grep -q "warning: P is taken as" "$work/messages" || complain "the findings are lost"
  expect_earlier_store
done

begin "all standard descriptors closed"
status=0
"$program" <&- >&- 2>&- || status=$?
[[ $status == 2 ]] || complain "exit status $status"
cmp -s MEC "$example/MEC" || complain "an input is overwritten"
! grep -q 'PROGRAM VARNOK' fort.* || complain "the listing is in a file of the run"

begin "standard input and standard error closed"
status=0
"$program" <&- 2>&- >"$work/listing" || status=$?
: >"$work/messages"
expect_new_store

begin "a reader that goes away"
{
  sleep 0.2
  run_status=0
  "$program" 2>"$work/messages" || run_status=$?
  echo "$run_status" >"$work/status"
} | true
status=$(cat "$work/status")
expect_fault "standard output" "Broken pipe"

# --- a small stack --------------------------------------------------------------------------------

begin "a stack of 64 kB"
(ulimit -s 64 && "$program" >"$work/listing" 2>"$work/messages")
status=$?
expect_new_store

# --- killed ---------------------------------------------------------------------------------------

begin "killed at any moment"
head -n -2 "$work/store" | sed 's/1/2/' >"$work/earlier" # an earlier store file that is no beginning of the new one
old=0
for i in {1..150}; do
  cp "$work/earlier" fort.3
  moment=$((${EPOCHREALTIME/[.,]/} + microseconds * i / 100))
  "$program" >/dev/null 2>&1 &
  while ((${EPOCHREALTIME/[.,]/} < moment)); do :; done # sooner than a sleep, which is a process of its own
  { kill -KILL $! && wait $!; } 2>/dev/null
  if cmp -s fort.3 "$work/earlier"; then
    old=$((old + 1))
  elif ! cmp -s fort.3 "$work/store"; then
    complain "neither the old nor the new store file"
  fi
done
echo "killed 150 times: $old times the earlier store file stayed"
((old > 0)) || complain "every kill came too late"
touch .fort.3.0123456789 .fort.3.short
find . -maxdepth 1 -name '.fort.*' -exec touch -d '2 minutes ago' {} +
touch .fort.3.0123abcdef # by a run that goes on
run
[[ -e .fort.3.short && -e .fort.3.0123abcdef ]] || complain "removed more than was left behind"
rm .fort.3.short .fort.3.0123abcdef
expect_new_store
[[ $(cat "$work/listing") == "$good_listing" ]] || complain "another listing after the kills"

((failures == 0)) && echo "all cases passed"
exit $((failures > 0))
