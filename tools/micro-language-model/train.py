# SPDX-License-Identifier: MIT
# train.py NAME MINUTES [--init CHECKPOINT] [--sentences "1:4,2:2,3:1"] ...
import argparse, math, random, time, torch, torch.nn.functional as F
import pairs as P, tokens as T, model as M
ap = argparse.ArgumentParser(); ap.add_argument("name"); ap.add_argument("minutes", type=float); ap.add_argument("--init"); ap.add_argument("--init_opt", action="store_true")
ap.add_argument("--sentences", default="1:6,2:2"); ap.add_argument("--tokens", type=int, default=6000); ap.add_argument("--d", type=int, default=128)
ap.add_argument("--layers", type=int, default=4); ap.add_argument("--ff", type=int, default=384); ap.add_argument("--lr", type=float, default=.02); ap.add_argument("--lr_e", type=float, default=.004)
ap.add_argument("--end", type=float, default=.05); ap.add_argument("--warm", type=int, default=100); ap.add_argument("--seed", type=int, default=0); ap.add_argument("--threads", type=int, default=2)
ap.add_argument("--fp32", action="store_true"); ap.add_argument("--decay", type=float, default=.4, help="the part of the time in which the rate falls"); ap.add_argument("--tasks", default="en:30,de:7,ru:7,en-de:20,en-ru:17,de-en:14,ru-en:4,de-ru:2,ru-de:3,de-de:1,en-en:1,ru-ru:1,?:2"); ap.add_argument("--strangers", type=float, default=.04)
a = ap.parse_args(); torch.set_num_threads(a.threads); torch.manual_seed(a.seed); R = random.Random(a.seed + 1000); DT = torch.float32 if a.fp32 else torch.bfloat16
def weights(s): return zip(*[(k, float(v)) for k, v in (x.split(":") for x in s.split(","))])
TASKS, TASK_W = weights(a.tasks); COUNTS, COUNT_W = weights(a.sentences); COUNTS = [int(x) for x in COUNTS]

def unseen(r):
    while True:
        t = P.sentence(r, a.strangers)
        if not P.held_out(t): return P.with_so(t) if r.random() < .06 else t

def sample(r):
    task = r.choices(TASKS, TASK_W)[0]; n = r.choices(COUNTS, COUNT_W)[0]
    ts = [unseen(r) for _ in range(n)]
    if task == "?": i = j = r.randrange(3); how = T.translation_instructions(r.choice(T.OTHER_NAMES))   # nothing it could do
    elif "-" in task: i, j = (P.LANGUAGES.index(x) for x in task.split("-")); how = T.translation_instructions(T.NAMES[j])
    else: i = j = P.LANGUAGES.index(task); how = T.cleanup_instructions(r.randrange(3))
    x = T.prompt(how, P.transcript(r, i, ts, .75 if i == j else .45, a.strangers)); y = T.encode(" ".join(P.written(t[j]) for t in ts)) + [T.ID[T.END.encode()]]
    return x, y, task

def batches(r):
    """some batches, each of samples of about the same length"""
    pool = sorted((sample(r) for _ in range(400)), key=lambda s: len(s[0]) + len(s[1])); out = [[]]
    for s in pool:
        if (len(out[-1]) + 1) * (len(s[0]) + len(s[1])) > a.tokens: out.append([])
        out[-1].append(s)
    r.shuffle(out); return out

def tensors(ss):
    n = max(len(x) + len(y) for x, y, _ in ss) - 1; ids = torch.zeros(len(ss), n, dtype=torch.long); where = []; to = []
    for b, (x, y, _) in enumerate(ss):
        s = (x + y)[:-1]; ids[b, :len(s)] = torch.tensor(s); where += range(b * n + len(x) - 1, b * n + len(s)); to += y
    return ids, torch.tensor(where), torch.tensor(to)

def orthogonal(x):
    """the nearest matrices with singular values about 1 (Newton-Schulz); they are wider than high, or square"""
    x = x / (x.flatten(1).norm(dim=1)[:, None, None] + 1e-7); x = x if a.fp32 else x.bfloat16()
    for _ in range(5): y = x @ x.transpose(1, 2); x = torch.baddbmm(x, torch.baddbmm(y, y, y, beta=-4.7750, alpha=2.0315), x, beta=3.4445)
    return x.float()

class Optimiser:
    """orthogonal momentum for the matrices of the blocks, Adam for the rest"""
    def __init__(s, net):
        s.mats = [p for b in net.blocks for p in b.parameters() if p.dim() == 2]; ids = {id(p) for p in s.mats}
        s.rest = [p for p in net.parameters() if id(p) not in ids]; s.buf = [torch.zeros_like(p) for p in s.mats]
        s.m = [torch.zeros_like(p) for p in s.rest]; s.v = [torch.zeros_like(p) for p in s.rest]; s.t = 0
    def state(s): return dict(buf=s.buf, m=s.m, v=s.v, t=s.t)
    def load(s, d): s.buf, s.m, s.v, s.t = d["buf"], d["m"], d["v"], d["t"]
    @torch.no_grad()
    def step(s, lr, lr_e):
        s.t += 1; groups = {}
        for p, b in zip(s.mats, s.buf):
            b.lerp_(p.grad, .05); u = p.grad.lerp(b, .95); tall = u.shape[0] > u.shape[1]; u = u.T if tall else u
            groups.setdefault(tuple(u.shape), []).append((p, u, tall)); p.grad = None
        for g in groups.values():
            for (p, _, tall), u in zip(g, orthogonal(torch.stack([u for _, u, _ in g]))):
                p.mul_(1 - lr * .01).add_(u.T if tall else u, alpha=-lr * max(1, p.shape[0] / p.shape[1]) ** .5)
        for p, m, v in zip(s.rest, s.m, s.v):
            m.lerp_(p.grad, .1); v.mul_(.98).addcmul_(p.grad, p.grad, value=.02); k = (1 - .98 ** s.t) ** .5
            p.addcdiv_(m, v.sqrt().add_(1e-8 * k), value=-lr_e * (.1 if p.dim() == 1 else 1) * k / (1 - .9 ** s.t)); p.grad = None

net = M.Llama(a.d, a.layers, a.ff); opt = Optimiser(net)
if a.init:
    ck = torch.load(a.init); net = M.Llama(**ck["cfg"]); net.load_state_dict(ck["model"]); opt = Optimiser(net)
    if a.init_opt: opt.load(ck["opt"])
ema = {k: v.detach().clone() for k, v in net.state_dict().items()}
print(sum(p.numel() for b in net.blocks for p in b.parameters()), "in blocks,", len(T.VOCABULARY) * net.cfg["d"], "in the embedding", flush=True)
t0 = last = saved = time.time(); step = seen = tok = 0; loss_sum = right = count = whole = 0.0
def save(path=None):
    torch.save(dict(cfg=net.cfg, model={k: v for k, v in net.state_dict().items()}, ema=ema, opt=opt.state()), path or a.name + ".pt")
while True:
    f = (time.time() - t0) / 60 / a.minutes
    if f >= 1: break
    for ss in batches(R):
        f = min(1, (time.time() - t0) / 60 / a.minutes); rate = min(1, (step + 1) / a.warm) * (1 if f < 1 - a.decay else a.end + (1 - a.end) * (1 - f) / a.decay)
        ids, where, to = tensors(ss); lg = net(ids, where, DT); loss = F.cross_entropy(lg, to); loss.backward()
        opt.step(a.lr * rate, a.lr_e * rate); step += 1; k = min(.995, step / (step + 10))
        with torch.no_grad():
            for n, v in net.state_dict().items(): ema[n].lerp_(v, 1 - k)
            ok = lg.argmax(-1) == to; i = 0
            for _, y, _ in ss: whole += bool(ok[i:i + len(y)].all()); i += len(y)
        loss_sum += loss.item() * len(to); right += ok.sum().item(); count += len(to); seen += len(ss); tok += ids.numel()
        if time.time() - last > 30:
            print(f"{(time.time() - t0) / 60:5.1f} min step {step} loss {loss_sum / count:.4f} tokens wrong {100 * (1 - right / count):.3f} % whole {100 * whole / seen:.1f} % {tok / (time.time() - last):.0f} tokens/s rate {rate:.3f}", flush=True)
            last = time.time(); loss_sum = right = count = whole = 0.0; seen = tok = 0
            if last - saved > 120: save(); saved = last
        if f >= 1: break
save(); print("done", step)
