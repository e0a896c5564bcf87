# SPDX-License-Identifier: MIT
# eval.py MODEL [--n scale] [--set NAME,NAME] [--cli PATH] [-v]   runs the real whisper-cli on held-out speech
import argparse, json, os, random, re, subprocess, sys, time, hashlib
import grammar as G
ap = argparse.ArgumentParser(); ap.add_argument("model"); ap.add_argument("--cli", default="whisper-cli")
ap.add_argument("--n", type=float, default=1.0); ap.add_argument("--set", default=""); ap.add_argument("-v", action="store_true"); ap.add_argument("--dir", default="eval"); ap.add_argument("--threads", default="10"); ap.add_argument("--seed", type=int, default=4242); ap.add_argument("--extra", default="")
a = ap.parse_args(); os.makedirs(a.dir, exist_ok=True)
r = random.Random(a.seed)
EN_V = [b + v for b in ("en-us", "en-gb") for v in ("", "+m1", "+m2", "+m3", "+m4", "+m5", "+m6", "+m7", "+f1", "+f2", "+f3", "+f4")]
NEW_V = ["en-us+Annie", "en-us+Michael", "en-gb+Mike", "en-us+travis", "en-gb+belinda", "en-us+boris", "en-gb+Diogo", "en-gb+grandpa"]   # variants absent from training
XV = ["", "+m1", "+m3", "+m5", "+m7", "+f1", "+f2", "+f4"]

def say(path, parts, voice, speed, pitch, lead, tail, noise=0.0, gain=0.8):
    """parts: list of (text, pause seconds after it)"""
    if os.path.exists(path): return
    t = path[:-4]; fs = []
    for i, (s, p) in enumerate(parts):
        subprocess.run(["espeak-ng", "-v", voice, "-s", str(speed), "-p", str(pitch), "-w", f"{t}.{i}.wav", s], check=True)
        subprocess.run(["sox", f"{t}.{i}.wav", "-r", "16000", "-c", "1", "-b", "16", f"{t}.{i}r.wav", "pad", str(lead if i == 0 else 0), str(p if i + 1 < len(parts) else tail), "gain", "-1"], check=True, stderr=subprocess.DEVNULL); fs.append(f"{t}.{i}r.wav"); os.unlink(f"{t}.{i}.wav")
    subprocess.run(["sox", *fs, path + ".c.wav", "gain", "-n", str(-20 * (1 - gain))], check=True, stderr=subprocess.DEVNULL)
    if noise: subprocess.run(f"sox -m -v 1 {path}.c.wav -v {noise} '|sox {path}.c.wav -p synth pinknoise' -b 16 {path}", shell=True, check=True, stderr=subprocess.DEVNULL); os.unlink(path + ".c.wav")
    else: os.rename(path + ".c.wav", path)
    for f in fs: os.unlink(f)

def heldout(r):
    while True:
        s = G.en_sentence(r)
        if G.held_out(s): return s
def dur(p): return (os.path.getsize(p) - 44) / 32000

def build():
    S = []
    def add(set_, i, parts, ref, lang, voice, **k):
        p = f"{a.dir}/{set_}-{i}.wav"; noise = r.choice([0, 0, .01, .03]); sp, pi = r.randint(130, 190), r.randint(30, 70); le, ta = r.choice([0, .1, .3, .8]), r.choice([0, .1, .4, 1.0])
        say(p, parts, voice, sp, pi, le, ta, noise, r.uniform(.3, 1)); S.append(dict(set=set_, wav=p, ref=ref, lang=lang, voice=voice, **k))
    for i in range(60):
        s = heldout(r); v = r.choice(EN_V)
        add("en-short", i, [(s, 0)], s, "en", v)
    for i in range(24):
        s = heldout(r); v = r.choice(NEW_V)
        add("en-newvoice", i, [(s, 0)], s, "en", v)
    for l, T in (("de", G.DE), ("ru", G.RU)):
        for i in range(32):
            s, e = T[i % 16]; v = l + r.choice(XV)
            add(l + "-short", i, [(s, 0)], s, l, v); S.append(dict(S[-1], set=l + "-translate", ref=e, translate=True))
    for i in range(24):
        l = ("en", "de", "ru")[i % 3]; s = heldout(r) if l == "en" else r.choice(G.DE if l == "de" else G.RU)[0]; v = r.choice(EN_V) if l == "en" else l + r.choice(XV)
        add("auto-short", i, [(s, 0)], s, "auto", v)
    def long(l, secs):
        parts = []; n = 0
        while n < secs:
            s = (heldout(r) if r.random() < .8 else r.choice(["New line.", "New paragraph.", "Thank you very much."])) if l == "en" else r.choice(G.DE if l == "de" else G.RU)[0]
            p = r.choice([.0, .2, .5, 1.0]); n += len(s) / 13 + p + .3; parts.append((s, p))
        return parts
    for i in range(16):
        P = long("en", r.uniform(6, 14)); v = r.choice(EN_V)
        add("en-long", i, P, " ".join(s for s, _ in P), "en", v)
    for l in ("de", "ru"):
        for i in range(8):
            P = long(l, r.uniform(6, 14)); v = l + r.choice(XV)
            add(l + "-long", i, P, " ".join(s for s, _ in P), l, v); S.append(dict(S[-1], set=l + "-long-tr", ref=" ".join(dict(G.DE + G.RU)[s] for s, _ in P), translate=True))
    for i in range(12):
        P = long("en", 26); v = r.choice(EN_V); pr = " ".join(heldout(r) for _ in range(14))[-600:]
        add("en-25s", i, P, " ".join(s for s, _ in P), "en", v, prompt=pr if i % 3 else None)
    for i in range(6):
        P = long("en", r.uniform(8, 16)); v = r.choice(EN_V)
        add("auto-long", i, P, " ".join(s for s, _ in P), "auto", v)
    for i, (d, k) in enumerate([(1, ""), (3, ""), (10, ""), (25, ""), (2, "whitenoise vol 0.001"), (4, "pinknoise vol 0.01"), (8, "pinknoise vol 0.003"), (3, "whitenoise vol 0.00003")]):
        p = f"{a.dir}/silence-{i}.wav"; subprocess.run(f"sox -n -r 16000 -c 1 -b 16 {p} {'synth %d %s' % (d, k) if k else 'trim 0 %d' % d}", shell=True, check=True, stderr=subprocess.DEVNULL)
        S.append(dict(set="silence", wav=p, ref="", lang=("en", "auto", "de", "ru")[i % 4]))
    return S

norm = lambda s: re.sub(r"[^\w\s]", "", s.lower()).split()
def ed(x, y):
    d = list(range(len(y) + 1))
    for i, u in enumerate(x, 1):
        p = d[0]; d[0] = i
        for j, w in enumerate(y, 1): p, d[j] = d[j], min(d[j] + 1, d[j - 1] + 1, p + (u != w))
    return d[-1]

def command(s, out):
    b = "1" if dur(s["wav"]) < 6 else "5"
    c = [a.cli, "-m", a.model, "-f", s["wav"], "-l", s["lang"], "-nt", "-otxt", "-of", out, "-t", a.threads, "-bs", b, "-bo", b, "-sns"] + (["-nf"] if b == "1" else []) + a.extra.split()
    if s.get("translate"): c.append("--translate")
    p = s.get("prompt") or (G.PROMPTS["translate"] if s.get("translate") else G.PROMPTS.get(s["lang"]))
    if p and s["lang"] != "auto": c += ["--prompt", p]
    return c

S = build(); R = {}; t0 = time.time()
if a.n < 1:                                                          # the first part of every set
    C = {}; K = []
    for s in S: C.setdefault(s["set"], []).append(s)
    for v in C.values(): K += v[:max(2, round(len(v) * a.n))]
    S = K
if a.set: S = [s for s in S if s["set"] in a.set.split(",")]
for s in S:
    out = f"{a.dir}/out-{os.getpid()}"; t = time.time()
    q = subprocess.run(command(s, out), stdout=subprocess.PIPE, stderr=subprocess.PIPE); w = time.time() - t
    if q.returncode: print("FAILED", q.returncode, s, q.stderr.decode()[-400:]); continue
    hyp = " ".join(open(out + ".txt", errors="replace").read().split()); fb = re.search(r"fallbacks =\s*(\d+) p /\s*(\d+) h", q.stderr.decode(errors="replace"))
    x = R.setdefault(s["set"], dict(n=0, e=0, w=0, ex=0, exn=0, t=0, fb=0, au=0)); e = ed(norm(s["ref"]), norm(hyp))
    x["n"] += 1; x["e"] += e; x["w"] += len(norm(s["ref"])); x["ex"] += hyp == s["ref"]; x["exn"] += e == 0; x["t"] += w; x["fb"] += sum(map(int, fb.groups())) if fb else 0; x["au"] += dur(s["wav"])
    if a.v and hyp != s["ref"]: print(s["set"], s["wav"], s["voice"] if "voice" in s else "", "%.1f s" % dur(s["wav"]), "\n   ref:", s["ref"], "\n   hyp:", hyp)
print("%-14s %5s %7s %7s %7s %8s %6s %6s" % ("set", "clips", "WER %", "exact%", "words=%", "audio s", "s/run", "fallb."))
for k, x in R.items():
    print("%-14s %5d %7.2f %7.1f %7.1f %8.1f %6.2f %6d" % (k, x["n"], 100 * x["e"] / max(1, x["w"]), 100 * x["ex"] / x["n"], 100 * x["exn"] / x["n"], x["au"], x["t"] / x["n"], x["fb"]))
print("total %.0f s" % (time.time() - t0))
