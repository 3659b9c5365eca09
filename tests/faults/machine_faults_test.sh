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

expect_fault() { # NAME REASON
  [[ $status == 2 ]] || complain "exit status $status"
  [[ $(cat "$work/messages") == "varpre: $1: $2" ]] || complain "standard error: $(head -n 3 "$work/messages")"
}

expect_earlier_store() {
  [[ $(cat fort.3) == earlier ]] || complain "the earlier store file is gone"
  [[ ! -e fort.3.tmp ]] || complain "a temporary file is left"
}

expect_new_store() {
  [[ $status == 0 ]] || complain "exit status $status: $(cat "$work/messages")"
  cmp -s fort.3 "$work/store" || complain "not the store file of a good run"
  [[ ! -e fort.3.tmp ]] || complain "a temporary file is left"
}

begin "a good run"
started=${EPOCHREALTIME/[.,]/}
run
microseconds=$((${EPOCHREALTIME/[.,]/} - started))
cp fort.3 "$work/store"
expect_new_store
good_listing=$(cat "$work/listing")

# --- inputs ---------------------------------------------------------------------------------------

for name in INP MEC THERMO MOLNEW fort.3 fort.10; do
  begin "$name is a directory"
  rm -rf "$name"
  mkdir "$name"
  run
  expect_fault "$name" "Is a directory"
  [[ $name == fort.3 ]] || expect_earlier_store
  [[ $name == fort.10 || ! -s $work/listing ]] || complain "a listing"
done

begin "an input that opens and cannot be read"
ln -sf /proc/self/mem MEC
run
expect_fault MEC "Input/output error"
expect_earlier_store
tail -n 1 "$work/listing" | grep -q '^0     ERROR - DEFECT INPUT ON UNIT   4$' || complain "listing: $(tail -n 1 "$work/listing")"

begin "a molecular database that opens and cannot be read"
ln -sf /proc/self/mem MOLNEW
run
expect_fault MOLNEW "Input/output error"
expect_earlier_store
grep -q 'List of Species' "$work/listing" || complain "the listing up to the fault is lost"

begin "a link that goes round"
rm fort.3
ln -s fort.3 fort.3
run
expect_fault fort.3 "Too many levels of symbolic links"

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

# --- the store file -------------------------------------------------------------------------------

begin "a link as store file, and its permissions"
mkdir elsewhere
mv fort.3 elsewhere/store
chmod 640 elsewhere/store
ln -s elsewhere/store fort.3
run
expect_new_store
[[ -L fort.3 ]] || complain "the link is gone"
[[ $(stat -c %a elsewhere/store) == 640 ]] || complain "other permissions"

begin "a link to nowhere as store file"
ln -sf nowhere fort.3
run
expect_new_store
[[ -L fort.3 ]] || complain "the link is gone"

begin "a pipe as store file"
mkfifo "$work/pipe"
ln -sf "$work/pipe" fort.3
timeout 20 cat "$work/pipe" >"$work/taken" &
run timeout 20
wait $!
[[ -p $work/pipe && -L fort.3 ]] || complain "the pipe is gone"
cmp -s "$work/taken" "$work/store" || complain "not the store file of a good run"

begin "a left-over temporary file"
echo precious >other
ln -s other fort.3.tmp
run
expect_new_store
[[ $(cat other) == precious ]] || complain "what the temporary name pointed to is overwritten"

begin "several runs in one directory"
for _ in {1..20}; do
  "$program" >/dev/null 2>"$work/messages_of_another" &
  run
  wait $! || complain "another run ended with status $?: $(cat "$work/messages_of_another")"
  expect_new_store
done

begin "a limit on the size of files"
rm -f fort.1?
for name in fort.10 fort.11 fort.12; do ln -s /dev/null "$name"; done
run prlimit --fsize=4096
expect_fault fort.3 "File too large"
expect_earlier_store

mkdir "$work/small"
if ((EUID == 0)) && mount -t tmpfs -o size=64k none "$work/small" 2>/dev/null; then
  mounts+=("$work/small")
  begin "a full disk"
  ln -sf "$work/small/store" fort.3
  echo earlier >"$work/small/store"
  head -c 100k /dev/zero >"$work/small/filling" 2>/dev/null
  truncate -s -4096 "$work/small/filling"
  run
  expect_fault fort.3 "No space left on device"
  expect_earlier_store
  [[ -L fort.3 && ! -e $work/small/store.tmp ]] || complain "the link or the temporary file"
else
  echo "skipped: a full disk (mount is not permitted)"
fi

# --- memory ---------------------------------------------------------------------------------------

readonly little=(prlimit --as=100000000) # bytes
begin "empty lines in little memory"
rm -f fort.1?
for name in fort.10 fort.11 fort.12; do ln -s /dev/null "$name"; done
run "${little[@]}"
if ((status == 0)); then
  for name in INP MEC THERMO; do
    cp "$example/$name" .
    head -c 4000000 /dev/zero | tr '\0' '\n' >>"$name"
    run "${little[@]}"
    expect_new_store
  done
else
  echo "skipped: empty lines in little memory (this build needs more for any run)"
fi

# --- standard descriptors -------------------------------------------------------------------------

begin "standard output full"
status=0
"$program" >/dev/full 2>"$work/messages" || status=$?
expect_fault "standard output" "No space left on device"

begin "standard output closed"
status=0
"$program" >&- 2>"$work/messages" || status=$?
expect_fault "standard output" "Bad file descriptor"

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
run
expect_new_store
[[ $(cat "$work/listing") == "$good_listing" ]] || complain "another listing after the kills"

((failures == 0)) && echo "all cases passed"
exit $((failures > 0))
