#!/usr/bin/env python3
"""Runs a small Slurm cluster of its own on this machine, disturbs a collection's array job, and counts what came of it.

Usage: cluster.py PROGRAM [--films 60] [--seconds 60] [--keep]

Two nodes, four tasks. One task is killed and requeued, one is requeued while it runs, one node is drained. Every daemon
lives in a temporary folder, listens on this machine alone, and is ended by its process id. Needs root, slurm-wlm and
munge; their services need not run, and are not touched.
"""
import argparse
import collections
import glob
import hashlib
import json
import os
import secrets
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import damaged_films  # noqa: E402  (beside this file)

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
SCRIPT = os.path.join(ROOT, "packaging", "slurm", "zelvo-avi.sbatch")
PARTS = 4

CONFIGURATION = """ClusterName=zelvo
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={port}
AuthType=auth/munge
AuthInfo=socket={folder}/munge/socket
SlurmUser=root
SlurmdUser=root
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
MpiDefault=none
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool.%n
SlurmctldPidFile={folder}/run/slurmctld.pid
SlurmdPidFile={folder}/run/slurmd.%n.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd.%n.log
ReturnToService=2
KillWait=10
CommunicationParameters=NoCtldInAddrAny,NoInAddrAny
NodeName=n1 NodeHostname={host} NodeAddr=127.0.0.1 Port={port1}
NodeName=n2 NodeHostname={host} NodeAddr=127.0.0.1 Port={port2}
PartitionName=all Nodes=n1,n2 Default=YES
"""


def say(text):
    print(f"cluster: {text}", flush=True)


def wait_until(claim, seconds, what):
    latest = time.monotonic() + seconds
    while time.monotonic() < latest:
        answer = claim()
        if answer:
            return answer
        time.sleep(0.05)
    raise RuntimeError(f"waited in vain for {seconds} s: {what}")


def free_port():
    with socket.socket() as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


class Cluster:
    def __init__(self, folder):
        self.folder = folder
        self.daemons = []
        self.environment = dict(os.environ, SLURM_CONF=os.path.join(folder, "slurm.conf"))

    def start(self):
        for name in ("munge", "state", "run"):
            os.makedirs(os.path.join(self.folder, name))
        key = os.path.join(self.folder, "munge", "key")
        with open(os.open(key, os.O_WRONLY | os.O_CREAT, 0o400), "wb") as file:
            file.write(secrets.token_bytes(1024))
        at = os.path.join(self.folder, "munge")
        self.daemon(
            "munged", "-F", f"--key-file={key}", f"--socket={at}/socket", f"--pid-file={at}/pid",
            f"--log-file={at}/log", f"--seed-file={at}/seed",
        )  # fmt: skip
        wait_until(lambda: os.path.exists(f"{at}/socket"), 20, "munged")
        configuration = self.environment["SLURM_CONF"]
        host = socket.gethostname().split(".")[0]
        with open(configuration, "w", encoding="ascii") as file:
            file.write(
                CONFIGURATION.format(
                    host=host, folder=self.folder, port=free_port(), port1=free_port(), port2=free_port()
                )
            )
        self.daemon("slurmctld", "-D", "-f", configuration, "-c")
        for node in ("n1", "n2"):
            os.makedirs(os.path.join(self.folder, f"spool.{node}"))
            self.daemon("slurmd", "-D", "-f", configuration, "-N", node)
        wait_until(lambda: self.ask("sinfo", "-h", "-N", "-o", "%T").split() == ["idle", "idle"], 60, "two idle nodes")

    def daemon(self, *command):
        with open(os.path.join(self.folder, "output"), "ab") as output:
            started = subprocess.Popen(
                command, env=self.environment, stdin=subprocess.DEVNULL, stdout=output, stderr=output
            )
        self.daemons.append(started)
        say(f"{command[0]} runs as process {started.pid}")

    def ask(self, *command, **more):
        """What the command says; nothing when it fails."""
        done = subprocess.run(
            command, env=dict(self.environment, **more), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True
        )
        return done.stdout if done.returncode == 0 else ""

    def tasks(self, job):
        """State by number of the task, of those that are still in the queue."""
        lines = self.ask("squeue", "-h", "-r", "-t", "all", "-j", job, "-o", "%K %T").split("\n")
        return {int(line.split()[0]): line.split()[1] for line in lines if len(line.split()) == 2}

    def stop(self):
        for daemon in reversed(self.daemons):
            if daemon.poll() is None:
                daemon.send_signal(signal.SIGTERM)
            try:
                daemon.wait(15)
            except subprocess.TimeoutExpired:
                daemon.kill()
                daemon.wait()


def batch_of(part):
    """The process of the batch that works on a part, and not those of its films."""
    for path in glob.glob("/proc/[0-9]*/cmdline"):
        try:
            with open(path, "rb") as file:
                words = file.read().split(b"\0")
        except OSError:
            continue
        if f"{part}/{PARTS}".encode() in words and b"--shard" in words and not words[1].startswith(b"--for-batch"):
            return int(path.split("/")[2])
    return None


def over(states):
    return all(state in ("COMPLETED", "FAILED", "CANCELLED", "TIMEOUT") for state in states.values())


def disturb(cluster, job, journals):
    """Kills and requeues one task, requeues another while it runs, and drains a node."""

    def lines(part):
        try:
            with open(os.path.join(journals, f"{part}-of-{PARTS}.journal"), "rb") as file:
                return file.read().count(b"\n")
        except FileNotFoundError:
            return 0

    process = wait_until(lambda: lines(1) > 2 and batch_of(1), 60, "the first task at work")
    os.kill(process, signal.SIGKILL)
    say(f"task 1 killed (process {process}) after {lines(1)} lines of its journal")
    wait_until(lambda: cluster.tasks(job).get(1) == "FAILED", 30, "the end of task 1")
    cluster.ask("scontrol", "requeue", f"{job}_1")
    cluster.ask("scontrol", "update", f"JobId={job}_1", "StartTime=now")
    say("task 1 requeued")
    wait_until(lambda: lines(2) > 2 and batch_of(2), 60, "the second task at work")
    cluster.ask("scontrol", "requeue", f"{job}_2")
    say(f"task 2 requeued while it ran, after {lines(2)} lines of its journal")
    cluster.ask("scontrol", "update", "NodeName=n2", "State=DRAIN", "Reason=test")
    say("node n2 drained: " + " ".join(cluster.ask("sinfo", "-h", "-N", "-o", "%N=%T").split()))

    def start_now():
        for part, state in cluster.tasks(job).items():
            if state == "PENDING":
                cluster.ask("scontrol", "update", f"JobId={job}_{part}", "StartTime=now")
        return over(cluster.tasks(job))

    wait_until(start_now, 400, "the end of all tasks")
    say("tasks: " + ", ".join(f"{part} {state}" for part, state in sorted(cluster.tasks(job).items())))
    cluster.ask("scontrol", "update", "NodeName=n2", "State=RESUME")


def digest(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def outputs(folder):
    return {
        os.path.relpath(os.path.join(place, name), folder): digest(os.path.join(place, name))
        for place, _, names in os.walk(folder)
        for name in names
    }


def check(films, names, saved, journals, wanted):
    done = collections.Counter()
    for path in glob.glob(os.path.join(journals, "*.journal")):
        with open(path, encoding="utf-8") as file:
            for line in map(json.loads, file):
                done[os.path.relpath(line["input"]["path"], films)] += line["state"] == "done"
    wrong = [f"{name}: {done[name]} lines say it is done" for name in names if done[name] != 1]
    there = outputs(saved)
    wrong += [f"{name} is not as it should be" for name in wanted if there.get(name) != wanted[name]]
    wrong += [f"{name} should not be there" for name in there if name not in wanted]
    return wrong


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("program")
    arguments.add_argument("--films", type=int, default=60)
    arguments.add_argument("--seconds", type=int, default=60, help="how long each film is")
    arguments.add_argument("--keep", action="store_true", help="leave the folder, and say where it is")
    options = arguments.parse_args()
    program = os.path.abspath(options.program)
    missing = [name for name in ("munged", "slurmctld", "slurmd", "sbatch") if shutil.which(name) is None]
    if missing or os.geteuid() != 0:
        sys.exit("cluster: needs root, and the packages slurm-wlm and munge")
    folder = tempfile.mkdtemp(prefix="zelvo-cluster-")
    os.chmod(folder, 0o711)  # munged insists that everybody can reach its socket
    cluster = Cluster(os.path.join(folder, "slurm"))
    try:
        films, saved, journals, calm = (os.path.join(folder, name) for name in ("films", "saved", "journals", "calm"))
        names = damaged_films.make(films, options.films, 3, options.seconds)
        os.mkdir(calm)
        subprocess.run([program, "salvage", "-r", films, "--output-dir", calm, "--quiet"], check=True)
        wanted = outputs(calm)
        say(
            f"{len(names)} damaged films, {sum(os.path.getsize(os.path.join(films, one)) for one in names) // 10**6} MB"
        )
        os.makedirs(cluster.folder)
        cluster.start()
        say("nodes: " + " ".join(cluster.ask("sinfo", "-h", "-N", "-o", "%N=%T").split()))
        chosen = {"FILMS": films, "SAVED": saved, "JOURNALS": journals, "ZELVO_AVI": program}
        submit = ("sbatch", "--parsable", f"--array=1-{PARTS}", "--time=10", f"--output={folder}/%a.out", SCRIPT)
        job = cluster.ask(*submit, **chosen).strip()
        if not job:
            raise RuntimeError("sbatch refused the job")
        say(f"job {job}: an array of {PARTS} tasks")
        disturb(cluster, job, journals)
        for again in range(3):
            if not any(state != "COMPLETED" for state in cluster.tasks(job).values()):
                break
            job = cluster.ask(*submit, **chosen).strip()
            say(f"submitted again as job {job}, for what the drain and the requeue left")
            wait_until(lambda: cluster.tasks(job) and over(cluster.tasks(job)), 300, "the end of all tasks")
        wrong = check(films, names, saved, journals, wanted)
        if wrong:
            raise RuntimeError("; ".join(wrong))
        page = os.path.join(folder, "collection.html")
        journal = sorted(glob.glob(os.path.join(journals, "*.journal")))
        told = subprocess.run(
            [program, "summary", "--html", page, *journal], check=True, stdout=subprocess.PIPE, text=True
        )
        say("the summary of all journals: " + told.stdout.split("\n")[0])
        say(f"all {len(names)} films have one line that says it is done, and one whole output, byte for byte")
    except RuntimeError as error:
        say(f"failed: {error}")
        sys.exit(1)
    finally:
        cluster.stop()
        say("every daemon has ended")
        if options.keep:
            say(f"all of it is in {folder}")
        else:
            shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    main()
