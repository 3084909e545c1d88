#!/usr/bin/env python3
"""A headless run beside curl. A Speed Test Node, then a Website Master with
its three Slaves, samples every 2 s a 10 MB and a 100 MB file from
`ormivane --speedtest-server`; curl fetches the same file on the tick between,
when the Node's transfer has ended. Prints both medians, their ratio and the
ratio of each pair. Asserts nothing; run it under the build lock:

    flock /tmp/ormivane-build.lock bench/transfer_headless.py build/ormivane

--plain leaves out the debug trace and the Website Node on a missing file
that otherwise fetch beside the measured one, as in the end-to-end test.

On a network the endpoint is another machine. Here it shares this one, and on
two cores the kernel tends to wake the monitor, a long-lived and mostly idle
process, on the processor the sender runs on, which costs it up to a quarter of
its speed, while curl, a fresh process each time, escapes that. So the endpoint
(and this script) get one processor and the monitor and curl share another;
--shared-cpus leaves them all where the kernel puts them."""
import os, subprocess, sys, tempfile, time, datetime, statistics, argparse

ap = argparse.ArgumentParser()
ap.add_argument("binary")
ap.add_argument("--ticks", type=int, default=22)
ap.add_argument("--plain", action="store_true", help="no debug words, no extra Nodes")
ap.add_argument("--kinds", default="speed,website")
ap.add_argument("--sizes", default="0,1")
ap.add_argument("--wrap", default="")
ap.add_argument("--env", default="")
ap.add_argument("--shared-cpus", action="store_true", help="do not give the endpoint a processor of its own")
args = ap.parse_args()

cpus = sorted(os.sched_getaffinity(0))[:2]
split = len(cpus) == 2 and not args.shared_cpus
client = (lambda: os.sched_setaffinity(0, {cpus[1]})) if split else None
if split:
    os.sched_setaffinity(0, {cpus[0]})  # the endpoint starts from here
    print(f"the endpoint runs on processor {cpus[0]}, the monitor and curl on processor {cpus[1]}")

tmp = tempfile.mkdtemp(prefix="ormmeasure")
ladder = os.path.join(tmp, "sizes.txt")
open(ladder, "wb").write(b"10000000|60\r\n100000000|600\r\n")
labels = {0: "10 MB", 1: "100 MB"}
server = subprocess.Popen([args.binary, "--speedtest-server", "127.0.0.1:0", "--variations", ladder],
                          stdout=subprocess.PIPE, text=True)
base = server.stdout.readline().split()[4]  # http://127.0.0.1:P/
port = base.split(":")[2].strip("/")

def curl(url):
    out = subprocess.run(["curl", "-s", "-o", "/dev/null", "-w", "%{speed_download} %{time_total} %{time_starttransfer}", url],
                         preexec_fn=client, capture_output=True, text=True).stdout.split()
    return float(out[0]), float(out[1]), float(out[2])

def log_rows(data):
    path = os.path.join(data, "Logs", "ex" + datetime.date.today().strftime("%Y%m%d") + ".log")
    try:
        text = open(path, encoding="latin-1", newline="").read()
    except OSError:
        return [], []
    fields, rows = [], []
    for line in text.split("\r\n"):
        if line.startswith("#Fields: "):
            fields = line[9:].split(",")
        elif line and not line.startswith("#"):
            rows.append(dict(zip(fields, line.split(","))))
    return fields, rows

def run(kind, size):
    url = f"{base}serverdownload.asp?s={size}"
    d = tempfile.mkdtemp(prefix="ormrun", dir=tmp)
    data, conf = os.path.join(d, "data"), os.path.join(d, "o.conf")
    s = {"FirstRun": "False", "SpeedTestServer": f"127.0.0.1:{port}", "Sensors": "1",
         "Sensor1/SampleEverySeconds": "2"}
    if kind == "speed":
        s.update({"Sensor1/Node1/NodeType": "17", "Sensor1/Node1/VDDownloadSize": str(size)})
        column = "RESULTSERVER_DOWNLOAD"
    else:
        s.update({"Sensor1/Nodes": "4", "Sensor1/Node1/NodeType": "4", "Sensor1/Node1/DownloadURL": url})
        for k, t in ((2, 1), (3, 2), (4, 3)):
            s.update({f"Sensor1/Node{k}/NodeType": "4", f"Sensor1/Node{k}/WebsiteMaster": "False",
                      f"Sensor1/Node{k}/WebsiteSlaveToSensor": "0", f"Sensor1/Node{k}/DownloadType": str(t)})
        column = "RESULT_" + url.upper()
    if not args.plain:
        s.update({"Sensors": "2", "Sensor2/SampleEverySeconds": "1", "Sensor2/Node1/NodeType": "4",
                  "Sensor2/Node1/DownloadURL": f"{base}nosuchfile"})
    with open(conf, "w") as f:
        f.write("[Settings]\n")
        for k, v in s.items():
            f.write(k.replace("/", "\\") + f"={v}\n")
    env = dict(os.environ, XDG_CONFIG_HOME=os.path.join(d, "xdg"), XDG_DATA_HOME=os.path.join(d, "xdgd"))
    words = [] if args.plain else ["txtDebug", "VDDebugMode"]
    if kind == "speed" and args.plain:
        words = ["VDDebugMode"]  # the minimum interval would stretch the Graph to 60 s
    for kv in filter(None, args.env.split(";")):
        k, v = kv.split("=", 1)
        env[k] = v
    p = subprocess.Popen(args.wrap.split() + [args.binary, "--headless", "--data-dir", data, "--config", conf,
                          "--ticks", str(args.ticks)] + words, env=env, stdout=subprocess.DEVNULL,
                         stderr=open(os.path.join(d, "stderr.txt"), "w"), preexec_fn=client)
    pairs = []
    seen = 0
    while p.poll() is None:
        _, rows = log_rows(data)
        if len(rows) > seen:
            seen = len(rows)
            # A line of the Graph's off tick comes a second after a transfer began: it has ended.
            if rows[-1].get(column, "-") == "-" and seen < args.ticks:
                time.sleep(0.05)
                c = curl(url)
                pairs.append((seen - 1, c))
        time.sleep(0.01)
    if args.wrap:
        r = subprocess.run(args.wrap.split() + ["curl", "-s", "-o", "/dev/null", url], capture_output=True, text=True)
        print("    curl under wrap:", r.stderr.replace("\n", " | "))
    _, rows = log_rows(data)
    due = [i for i, r in enumerate(rows) if r.get(column, "-") != "-"]
    node = [float(rows[i][column]) for i in due[1:]]
    extra = ""
    if kind == "website":
        extra = " RTIME " + " ".join(rows[i].get("RTIME_" + url.upper(), "?") for i in due[1:])
    curls = [c[0] for _, c in pairs]
    for line in open(os.path.join(d, "stderr.txt")):
        print("   ", line.rstrip())
    after = {row: c for row, c in pairs}
    ratios = [float(rows[i][column]) / after[i - 1][0] for i in due[1:] if (i - 1) in after and after[i - 1][0] > 0]
    if not node or not curls:
        print(kind, size, "no samples", len(node), len(curls), rows[-1] if rows else None)
        return
    nm, cm = statistics.median(node), statistics.median(curls)
    print(f"{kind:8s} {labels[size]:7s} Node median {nm/1e6:8.1f} MB/s  curl median {cm/1e6:8.1f} MB/s  "
          f"ratio of medians {nm/cm:.3f}  paired ratios {' '.join(f'{x:.2f}' for x in ratios)}")
    print(f"         curl total s {' '.join(f'{c[1]:.3f}' for _, c in pairs)}  first byte s {' '.join(f'{c[2]:.4f}' for _, c in pairs)}{extra}")
    sys.stdout.flush()

try:
    for size in [int(x) for x in args.sizes.split(",")]:
        for kind in args.kinds.split(","):
            run(kind, size)
finally:
    server.terminate()
    server.wait()
