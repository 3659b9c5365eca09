#!/usr/bin/env bash
# The sweep through a real Slurm of one node, on loopback addresses, in namespaces of its own: what it starts ends
# with it. Needs root. slurm_test.sh EXAMPLES SCRATCH LOCAL_RESULTS, programs on the path
set -euo pipefail

if [[ -z ${IN_NAMESPACE:-} ]]; then
  exec env IN_NAMESPACE=1 unshare --mount --pid --net --uts --ipc --fork --kill-child --mount-proc bash "$0" "$(realpath "$1")" \
    "$(realpath -m "$2")" "$(realpath "$3")"
fi

examples=$1 scratch=$2 local_results=$3
cores=$(getconf _NPROCESSORS_ONLN)
ip link set lo up
ip address add 192.0.2.1/32 dev lo # Slurm listens where an address is that is not 127.*
hostname sweep-node
mount -t tmpfs none /run
mkdir -p /run/munge /run/slurm/spool /run/slurm/state
rm -rf "$scratch"
mkdir -p "$scratch"
cp -r "$examples/sweep" "$examples/hydrogen-ignition" "$scratch"

# The services find each other by name: only this namespace sees the file.
cp /etc/hosts /run/hosts
echo "127.0.0.1 sweep-node" >>/run/hosts
mount --bind /run/hosts /etc/hosts

head -c 1024 /dev/urandom >/run/munge/key
chmod 600 /run/munge/key
cat >/run/slurm/slurm.conf <<CONF
ClusterName=sweep
SlurmctldHost=sweep-node(127.0.0.1)
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
AuthInfo=socket=/run/munge/socket
CredType=cred/munge
StateSaveLocation=/run/slurm/state
SlurmdSpoolDir=/run/slurm/spool
SlurmctldPidFile=/run/slurm/slurmctld.pid
SlurmdPidFile=/run/slurm/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SchedulerParameters=sched_interval=1,batch_sched_delay=0
MpiDefault=none
ReturnToService=2
NodeName=sweep-node NodeAddr=127.0.0.1 CPUs=$cores RealMemory=2000 State=UNKNOWN
PartitionName=main Nodes=ALL Default=YES MaxTime=INFINITE State=UP
CONF
export SLURM_CONF=/run/slurm/slurm.conf USER=root

munged --force --foreground --num-threads=2 --key-file=/run/munge/key --socket=/run/munge/socket --pid-file=/run/munge/pid \
  --log-file=/run/munge/log --seed-file=/run/munge/seed &>/run/munge/output &
slurmctld -D &>/run/slurm/slurmctld.log &
slurmd -D -N sweep-node &>/run/slurm/slurmd.log &
for ((waited = 0; ; ++waited)); do
  [[ $(sinfo -h -o %t 2>/dev/null) != idle ]] || break
  if ((waited > 60)); then
    tail -n 20 /run/munge/output /run/munge/log /run/slurm/*.log
    echo "Slurm does not come up" >&2
    exit 1
  fi
  sleep 1
done
echo "Slurm $(sinfo -V | cut -d' ' -f2) is up with $cores cores"

cd "$scratch/sweep"
began=$EPOCHREALTIME
if snakemake --help | grep -q -- --slurm; then executor=(--slurm); else executor=(--executor slurm); fi
snakemake "${executor[@]}" --jobs 50 --max-status-checks-per-second 1 &>../snakemake.log || {
  tail -n 40 ../snakemake.log /run/slurm/*.log
  cat .snakemake/slurm_logs/*/*.log | tail -n 40
  exit 1
}
printf 'the sweep through Slurm took %.1f s; jobs:\n' "$(bc <<<"$EPOCHREALTIME - $began")"
scontrol show job | grep -o 'JobState=[A-Z]*' | sort | uniq -c
diff results/summary.csv "$local_results/summary.csv"
echo "the same summary as on this machine without it"
