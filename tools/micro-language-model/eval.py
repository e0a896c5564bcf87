# SPDX-License-Identifier: MIT
# eval.py MODEL [--server PROGRAM] [--n NUMBER] [--sets NAME,...] [-v]: asks the real llama-server for sentences that training never saw.
import argparse, json, random, time
import pairs as P, tokens as T
from server import Server
ap = argparse.ArgumentParser(); ap.add_argument("model"); ap.add_argument("--server", default="llama-server"); ap.add_argument("--n", type=int, default=40)
ap.add_argument("--sets", default="en,de,ru,en-de,en-ru,de-en,ru-en,de-ru,ru-de"); ap.add_argument("--lengths", default="1,2,3,5,8,12"); ap.add_argument("--seed", type=int, default=99)
ap.add_argument("--strangers", type=float, default=0.0); ap.add_argument("--more", default="{}", help="more fields of the request, as JSON"); ap.add_argument("-v", action="store_true"); a = ap.parse_args()

def unseen(r):
    while True:
        t = P.sentence(r, a.strangers)
        if P.held_out(t): return P.with_so(t) if r.random() < .06 else t

def distance(x, y):
    d = list(range(len(y) + 1))
    for i, u in enumerate(x, 1):
        p = d[0]; d[0] = i
        for j, w in enumerate(y, 1): p, d[j] = d[j], min(d[j] + 1, d[j - 1] + 1, p + (u != w))
    return d[-1]

def check_tokens(s, r):
    """that the server's tokens are those of the training"""
    for _ in range(60):
        i = r.randrange(3); how = r.choice([T.cleanup_instructions(r.randrange(3)), T.translation_instructions(r.choice(T.NAMES + T.OTHER_NAMES))])
        text = P.transcript(r, i, [P.sentence(r, .3) for _ in range(2)], strangers=.3) + r.choice(["", " €5 日本 \\n \t\x01", "\n\n1,5 km..."])
        sent = s.template(how, f"<raw>{text}</raw>"); assert s.tokens(sent) == T.prompt(how, text), (sent, s.tokens(sent), T.prompt(how, text))
    print("tokens are the same")

with Server(a.server, a.model) as s:
    r = random.Random(a.seed); check_tokens(s, r); t0 = time.time(); total = {}
    print("%-7s %9s %6s %9s %9s" % ("task", "sentences", "asked", "words wr.", "exact"))
    for task in a.sets.split(","):
        i, j = (P.LANGUAGES.index(x) for x in (task.split("-") if "-" in task else (task, task)))
        for n in map(int, a.lengths.split(",")):
            e = w = ok = 0; r = random.Random(f"{a.seed} {task} {n}"); k = max(4, a.n // n if n > 2 else a.n)
            for _ in range(k):
                ts = [unseen(r) for _ in range(n)]; how = T.cleanup_instructions(r.randrange(3)) if i == j else T.translation_instructions(T.NAMES[j])
                said = P.transcript(r, i, ts, .75 if i == j else .45, a.strangers); want = " ".join(P.written(t[j]) for t in ts)
                got, why = s.ask(how, f"<raw>{said}</raw>", **json.loads(a.more)); d = distance(want.split(), got.split())
                e += d; w += len(want.split()); ok += got == want and why == "stop"
                if a.v and (got != want or why != "stop"): print(f"  {why}\n   said: {said}\n   want: {want}\n   got:  {got}")
            print("%-7s %9d %6d %7.1f %% %7.1f %%" % (task, n, k, 100 * e / w, 100 * ok / k), flush=True)
            x = total.setdefault(n, [0, 0, 0, 0]); x[0] += e; x[1] += w; x[2] += ok; x[3] += k
    for n, (e, w, ok, k) in total.items(): print("%-7s %9d %6d %7.1f %% %7.1f %%" % ("all", n, k, 100 * e / w, 100 * ok / k))
    print("%.0f s" % (time.time() - t0))
