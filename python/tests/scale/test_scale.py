"""The examples for more than one machine, run for real on this one."""

import functools
import http.server
import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import threading
import time

import pytest

EXAMPLES = pathlib.Path(__file__).resolve().parents[3] / "examples" / "scale"
PROGRAM = pathlib.Path(os.environ["TYPESCOUT_PROGRAM"])
SAMPLES = pathlib.Path(os.environ["TYPESCOUT_SAMPLES"])


@pytest.fixture(scope="module")
def tree(tmp_path_factory):
    """20,000 files, the samples again and again."""
    folder = tmp_path_factory.mktemp("tree")
    samples = sorted(path for path in SAMPLES.rglob("*") if path.is_file())
    for i in range(20_000):
        target = folder / f"{i // 1000:02}" / f"{i:05}{samples[i % len(samples)].suffix}"
        target.parent.mkdir(exist_ok=True)
        os.link(samples[i % len(samples)], target)
    return folder


class Host:
    """An sshd on the loopback that runs this machine's program."""

    def __init__(self, folder, port):
        self.folder, self.port = folder, port
        folder.mkdir()
        for key in ("host", "user"):
            subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", folder / key], check=True)
        shutil.copy(folder / "user.pub", folder / "authorized_keys")
        (folder / "config").write_text(
            f"Port {port}\nListenAddress 127.0.0.1\nHostKey {folder}/host\nPidFile none\n"
            f"AuthorizedKeysFile {folder}/authorized_keys\nStrictModes no\nUsePAM no\n"
            f"SetEnv PATH={PROGRAM.parent}:/usr/bin:/bin\nMaxStartups 100\nMaxSessions 100\n")
        self.process = subprocess.Popen(
            ["/usr/sbin/sshd", "-D", "-e", "-f", folder / "config"], start_new_session=True,
            stderr=subprocess.DEVNULL)

    def line(self):
        return (f"2/ssh -F none -p {self.port} -i {self.folder}/user -o StrictHostKeyChecking=no "
                "-o UserKnownHostsFile=/dev/null -o LogLevel=ERROR -o IdentitiesOnly=yes "
                f"-o ConnectionAttempts=5 127.0.0.1\n")

    def die(self):
        """Kills the daemon, its connections and what they run, as a power failure would."""
        pids, found = [self.process.pid], []
        while pids:
            found += pids
            children = [subprocess.run(["pgrep", "-P", str(pid)], capture_output=True, text=True, check=False)
                        for pid in pids]
            pids = [int(pid) for child in children for pid in child.stdout.split()]
        for pid in found:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        self.process.wait()


@pytest.fixture
def hosts(tmp_path):
    os.makedirs("/run/sshd", exist_ok=True)
    started = [Host(tmp_path / f"host{i}", 22030 + i) for i in range(2)]
    time.sleep(0.5)
    yield started
    for host in started:
        host.die()


@pytest.mark.parametrize("one_dies", [False, True])
def test_over_ssh(tree, hosts, tmp_path, one_dies):
    (tmp_path / "hosts").write_text("".join(host.line() for host in hosts))
    environment = {**os.environ, "PARALLEL_HOME": str(tmp_path)}
    (tmp_path / "will-cite").touch()
    with open(tmp_path / "types.jsonl", "wb") as output:
        running = subprocess.Popen([EXAMPLES / "over_ssh.sh", tmp_path / "hosts", tree],
                                   stdout=output, env=environment)
        if one_dies:
            while (tmp_path / "types.jsonl").stat().st_size == 0 and running.poll() is None:
                time.sleep(0.05)
            assert running.poll() is None, "it is over already"
            hosts[1].die()
        assert running.wait(timeout=300) == 0
    alone = subprocess.run([PROGRAM, "-r", "--jsonl", tree], capture_output=True, check=False)
    together = (tmp_path / "types.jsonl").read_bytes()
    assert sorted(together.splitlines()) == sorted(alone.stdout.splitlines())
    assert len(together.splitlines()) == 20_000


@pytest.mark.parametrize("one_dies", [False, True])
def test_with_dask(tree, tmp_path, one_dies):
    output = tmp_path / "types"
    running = subprocess.Popen([sys.executable, EXAMPLES / "with_dask.py", tree, output],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    if one_dies:
        while running.poll() is None and not any(output.glob("*.jsonl")):
            time.sleep(0.01)
        workers = subprocess.run(["pgrep", "-P", str(running.pid), "-f", "spawn_main"],
                                 capture_output=True, text=True, check=True).stdout.split()
        os.kill(int(workers[0]), signal.SIGKILL)
    counts = running.communicate(timeout=300)[0].splitlines()
    assert running.returncode == 0
    records = [json.loads(line) for part in output.glob("*.jsonl") for line in part.open()]
    assert len({record["path"] for record in records}) == len(records) == 20_000
    assert sum(int(line.split()[0]) for line in counts) == 20_000
    alone = subprocess.run([PROGRAM, "-r", "--jsonl", tree], capture_output=True, text=True, check=False)
    labels = {record["path"]: record["label"] for record in map(json.loads, alone.stdout.splitlines())
              if record["status"] == "recognised"}
    assert {r["path"]: r["label"] for r in records if r["label"] != "unknown"} == labels


class Ranges(http.server.SimpleHTTPRequestHandler):
    """Files with ranges, and what was asked for."""

    asked = []

    def do_GET(self):
        content = pathlib.Path(self.translate_path(self.path)).read_bytes()
        first, last = self.headers["Range"].removeprefix("bytes=").split("-")
        self.asked.append((self.path, self.headers["Range"]))
        if int(first) >= len(content):
            self.send_error(416)
            return
        part = content[int(first):int(last) + 1 if last else None]
        self.send_response(206)
        self.send_header("Content-Range", f"bytes {first}-{int(first) + len(part) - 1}/{len(content)}")
        self.send_header("Content-Length", str(len(part)))
        self.end_headers()
        self.wfile.write(part)

    def log_message(self, *_):
        pass


def test_from_a_store(tmp_path):
    word = next(path for path in SAMPLES.rglob("*")
                if path.is_file() and path.read_bytes().startswith(b"\xd0\xcf\x11\xe0"))
    (tmp_path / "letter.doc").write_bytes(word.read_bytes() + bytes(60_000))
    (tmp_path / "logo%201.png").write_bytes(b"\x89PNG\r\n\x1a\n" + bytes(200_000))
    (tmp_path / "empty").touch()
    handler = functools.partial(Ranges, directory=tmp_path)
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        base = f"http://127.0.0.1:{server.server_port}"
        said = subprocess.run(
            [sys.executable, EXAMPLES / "from_a_store.py"]
            + [f"{base}/{name}" for name in ("logo%25201.png", "letter.doc", "empty")],
            capture_output=True, text=True, check=True).stdout.splitlines()
        server.shutdown()
    assert said[0].endswith("logo%25201.png: 0x0322 PNG picture (50000 of 200008 bytes)")
    whole = (tmp_path / "letter.doc").stat().st_size
    assert said[1].endswith(f"({whole} of {whole} bytes)") and "unknown" not in said[1]
    assert said[2].endswith("empty: unknown (0 of 0 bytes)")
    assert [path for path, _ in Ranges.asked].count("/logo%25201.png") == 1
