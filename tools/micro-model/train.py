# SPDX-License-Identifier: MIT
# train.py NAME MINUTES [--init ckpt] [--ctx "150:4,300:3,..."] [--lr 1e-3] ...
import argparse, math, pickle, random, time, sys, os, numpy as np, torch, torch.nn.functional as F
import grammar as G, melspec as M, model as W
ap = argparse.ArgumentParser()
ap.add_argument("name"); ap.add_argument("minutes", type=float)
ap.add_argument("--pool", default="pool_a"); ap.add_argument("--init"); ap.add_argument("--ctx", default="200:3,300:3,400:2")
ap.add_argument("--frames", type=int, default=9600); ap.add_argument("--lr", type=float, default=1.5e-3); ap.add_argument("--lr_end", type=float, default=1e-4)
ap.add_argument("--warm", type=int, default=300); ap.add_argument("--ctc", type=float, default=0.3); ap.add_argument("--max_utts", type=int, default=99)
ap.add_argument("--limit", type=int, default=0); ap.add_argument("--d", type=int, default=128); ap.add_argument("--le", type=int, default=3); ap.add_argument("--ld", type=int, default=2)
ap.add_argument("--fp32", action="store_true"); ap.add_argument("--seed", type=int, default=0); ap.add_argument("--noaug", action="store_true")
ap.add_argument("--norandom", action="store_true"); ap.add_argument("--nodup", type=float, default=0.0); ap.add_argument("--plong", type=float, default=0.12); ap.add_argument("--off0", type=float, default=0.4); ap.add_argument("--startw", type=float, default=1.0); ap.add_argument("--guide", type=float, default=0.3); ap.add_argument("--init_opt", action="store_true"); ap.add_argument("--langs", default="en:6,de:2,ru:2")
a = ap.parse_args()
torch.set_num_threads(2); torch.manual_seed(a.seed); R = random.Random(a.seed + 77); NR = np.random.default_rng(a.seed)

fr = np.load(a.pool + ".npy", mmap_mode=None); idx = pickle.load(open(a.pool + ".pkl", "rb"))
if a.limit: idx = idx[:a.limit]
if a.norandom:                                                       # leave out the random word sequences
    rr = random.Random(3); known = {G.en_sentence(rr) for _ in range(300000)}; idx = [u for u in idx if u["lang"] != "en" or u["text"] in known]
PH = sorted({c for u in idx for c in u["ph"]} - {"ˌ", " ", "\n"}) if not a.init else None
CW = sorted({t.lower() for t in G.WORDS})
if a.init:
    ck = torch.load(a.init); PH = ck["ph"]; cfg = ck["cfg"]; ck["cfg_ld"] = cfg["ld"]; cfg = dict(cfg, ld=max(cfg["ld"], a.ld))
else: cfg = dict(d=a.d, h=4, le=a.le, ld=a.ld, n_ph=len(PH) + 1, n_cw=len(CW) + 1)
PHI = {c: i + 1 for i, c in enumerate(PH)}; CWI = {c: i + 1 for i, c in enumerate(CW)}
def windows(u):
    """rough place (10 ms frames in the utterance) of every token, by letters; for the attention guide"""
    ts = G.split(u["text"]); w = [(len(x) if x not in G.PUNCT else 3 if x == "," else 0.0) for x in ts]; tot = sum(w); c = 3.0; k = (u["n"] - 7) / tot; out = []
    for x, y in zip(ts, w): out.append((c - (16 if x not in G.PUNCT else 8), c + y * k + (16 if x not in G.PUNCT else 26))); c += y * k
    return out
for u in idx:
    u["tok"] = G.encode(u["text"]); u["tok_en"] = G.encode(u["en"])
    u["win"] = windows(u)
    u["phi"] = [PHI[c] for c in u["ph"] if c in PHI]; u["cwi"] = [CWI[t.lower()] for t in G.split(u["text"]) if t not in G.PUNCT]
by_lang = {}; by_voice = {}
for u in idx: by_lang.setdefault(u["lang"], []).append(u); by_voice.setdefault((u["lang"], u["voice"]), []).append(u)
print({k: len(v) for k, v in by_lang.items()}, len(PH), "phones", len(CW), "words", W.NU, "tokens", flush=True)
LANGS = [(k, float(v)) for k, v in (x.split(":") for x in a.langs.split(",")) if k in by_lang]

def noise_bank():
    n = 16000 * 40; out = []
    for e in (0, .5, 1.0):                                      # white, pink, brown
        x = NR.standard_normal(n); X = np.fft.rfft(x); f = np.maximum(np.fft.rfftfreq(n, 1 / 16000), 30); X /= f ** e
        x = np.fft.irfft(X, n); x /= x.std(); out.append(M.mel_power(x.astype(np.float32)).numpy())
    t = np.arange(n) / 16000; x = sum(np.sin(2 * np.pi * 50 * k * t + k) / k for k in (1, 2, 3, 5)); x /= x.std()
    out.append((M.mel_power((x + .1 * NR.standard_normal(n)).astype(np.float32))).numpy())
    return out
NOISE = noise_bank()

def compose(T):
    """one sample of T mel frames: (mel power [T,80], lang, utterances)"""
    p = np.zeros((T, 80), np.float32); us = []; at = []
    lang = R.choices([l for l, _ in LANGS], [w for _, w in LANGS])[0]
    if a.noaug or R.random() > 0.07:
        pool = by_lang[lang]; same = R.random() < 0.6
        want = R.uniform(0.25, 1.0) * T if R.random() < 0.7 else R.uniform(60, T)
        pos = R.choice([0, 0, R.randint(0, 30), R.randint(0, min(120, T // 4))]); tries = 0
        u = R.choice(pool); vs = by_voice[(lang, u["voice"])]
        while tries < 6 and len(us) < a.max_utts:
            if pos + u["n"] + 5 > T:
                tries += 1
            else:
                g = 10 ** (R.uniform(-.15, .15) * 2) if us else 1.0
                p[pos:pos + u["n"]] += 10 ** fr[u["off"]:u["off"] + u["n"]].astype(np.float32) * g; us.append(u); at.append(pos)
                pos += u["n"] + R.choice([R.randint(3, 25), R.randint(15, 60), R.randint(30, 150)])
                if pos > want: break
            for _ in range(12):                                      # mostly no sentence twice in one clip
                u = R.choice(vs if same and len(vs) > 3 else pool)
                if R.random() > a.nodup or u["text"].startswith("New ") or not any(v["text"] == u["text"] for v in us): break
    if a.noaug: return p, lang, us, at
    p *= 10 ** R.uniform(-2.2, .3)
    if us and R.random() < 0.6:                                 # random equaliser
        c = np.interp(np.arange(80), np.linspace(0, 79, 6), NR.normal(0, .25, 6)); p *= (10 ** c)[None].astype(np.float32)
    if R.random() < (0.7 if us else 0.85):
        nb = R.choice(NOISE); o = R.randint(0, len(nb) - T - 1)
        if us: lvl = 10 ** (-R.uniform(1.5, 5.0)) * max(float(p.sum(1).max()), 1e-9) / float(nb[o:o + T].sum(1).mean())
        else: lvl = 10 ** R.uniform(-10, -3)
        t = R.choice([T, T, min(pos, T) if us else T, R.randint(T // 4, T)])   # the recording may end before the context does: digital silence after it
        p[:t] += nb[o:o + t] * lvl
    return p, lang, us, at

def specaug(m):
    if a.noaug: return m
    f = m.min()
    if R.random() < .5: w = R.randint(1, 10); k = R.randint(0, 79 - w); m[:, k:k + w] = f
    for _ in range(R.randint(0, 2 + m.shape[0] // 400)): w = R.randint(2, 10); k = R.randint(0, m.shape[0] - w); m[k:k + w] = f
    return m

ENDS = {G.TOK[b"."], G.TOK[b"?"]}
PB = {k: G.tokenize_prompt(p) for k, p in G.PROMPTS.items()}
def prompt(lang, task, long):
    x = R.random()
    if x < .3: return []
    if x < (.4 if long else .6): return PB["translate" if task else lang]
    n = R.choice([222, R.randint(3, 222), R.randint(3, 222)]) if long else R.randint(3, 45); out = []
    l = ("en" if task else lang) if R.random() < .8 else R.choice(list(by_lang))
    kind = R.random()                                                # words of the vocabulary, unknown text (single bytes), or both
    while len(out) < n:
        if kind < .4 or (kind < .7 and R.random() < .5): out += R.choice(by_lang.get(l, idx))["tok"]
        elif kind < .95: out += [G.BYTE0 + R.randrange(32, 256) for _ in range(R.randint(1, 12))] + ([R.choice(PUNCT_IDS)] if R.random() < .3 else [])
        else: out += [R.choice(W.USED[12:])]
    return out[-n:]
PUNCT_IDS = [G.TOK[p.encode()] for p in G.PUNCT]

def batch(T, B):
    mel = torch.empty(B, T, 80); seqs = []; phs = []; cws = []; sil = []; gin = []; gout = []; st = []; long = (not a.noaug) and R.random() < a.plong
    for b in range(B):
        p, lang, us, at = compose(T); mel[b] = specaug(M.finish(torch.from_numpy(p)))
        task = int(R.random() < (.3 if lang != "en" else .08)) if not a.noaug else 0
        pr = prompt(lang, task, long) if not a.noaug else []
        if pr: pr = [G.PREV] + pr[-222:]
        s = pr + [G.SOT, G.LANG[lang], G.TRANSLATE if task else G.TRANSCRIBE, G.NOT]
        t = [-1] * len(pr) + [G.LANG[lang] if us else G.LANG["en"], -1, -1]
        txt = [x for u in us for x in u["tok_en" if task else "tok"]]
        if us:
            wn = []
            for u, o in zip(us, at): wn += [(o - 20, o + u["n"] + 20)] * len(u["tok_en"]) if task else [(o + x, o + y) for x, y in u["win"]]
            n0 = len(s)                                              # token txt[i] is the input at n0 + i and the target at n0 + i - 1
            for i, (x, y) in enumerate(wn):
                w_ = a.startw if i == 0 or txt[i - 1] in ENDS else 1.0
                gin.append((b, n0 + i, x / 2, y / 2, 1.0)); gout.append((b, n0 + i - 1, x / 2, y / 2, w_))
                if w_ > 1: st.append((b, n0 + i - 1))
            st.append((b, n0 + len(txt) - 1))
            s += txt; t += txt + [G.EOT]
        else:                                                        # no speech: <|nospeech|>, and end of text after whatever token the decoder is forced to emit
            sil.append((b, len(s) - 1)); k = R.choice([1, 1, 1, 2, 3])
            s += [R.choice(W.USED[12:]) if R.random() < .5 else 0 for _ in range(k)]; t += [G.NOSP] + [-1] * (k - 1) + [G.EOT]
        seqs.append((s, t)); phs.append([x for u in us for x in u["phi"]]); cws.append([x for u in us for x in u["cwi"]])
    L = max(len(s) for s, _ in seqs)
    si = torch.full((B, L), W.NU); ti = torch.full((B, L), -100)
    for b, (s, t) in enumerate(seqs):
        si[b, :len(s)] = torch.tensor([W.ix(x) for x in s]); ti[b, :len(t)] = torch.tensor([-100 if x < 0 else W.ix(x) for x in t])
    return mel, si, ti, phs, cws, sil, (gin, gout), st

net = W.Whisper(**cfg)
if a.init:
    miss = net.load_state_dict(ck["net"], strict=False); print("new parameters:", len(miss.missing_keys))
    if miss.missing_keys:                                            # added decoder layers start as the identity
        for i in range(ck["cfg_ld"], cfg["ld"]):
            b = net.decoder.blocks[i]
            for l in (b.attn.out, b.cross_attn.out, b.mlp[2]): torch.nn.init.zeros_(l.weight); torch.nn.init.zeros_(l.bias)
for i in range(cfg['ld']): net.decoder.blocks[i].cross_attn.keep = a.guide > 0
print(sum(p.numel() for p in net.parameters()), "parameters", flush=True)
opt = torch.optim.AdamW(net.parameters(), lr=a.lr, betas=(.9, .98), weight_decay=.01)
if a.init and a.init_opt: opt.load_state_dict(ck["opt"])
CT = [(int(k), float(v)) for k, v in (x.split(":") for x in a.ctx.split(","))]

def ctc(logits, targets):
    n = torch.tensor([len(t) for t in targets]); B, T = logits.shape[:2]
    if int(n.sum()) == 0: return logits.sum() * 0
    return F.ctc_loss(logits.float().log_softmax(-1).transpose(0, 1), torch.tensor([x for t in targets for x in t]), torch.full((B,), T), n, zero_infinity=True, reduction="sum") / n.sum()

def save(tag=""):
    torch.save(dict(net=net.state_dict(), opt=opt.state_dict(), cfg=cfg, ph=PH, args=vars(a)), f"{a.name}{tag}.pt.tmp"); os.replace(f"{a.name}{tag}.pt.tmp", f"{a.name}{tag}.pt")

bad = 0; t0 = time.time(); step = 0; acc = {}; last = t0; tdata = 0; saved = t0
while True:
    el = (time.time() - t0) / 60
    if el > a.minutes: break
    fr_ = el / a.minutes
    lr = min(1, (step + 1) / a.warm) * (a.lr_end + (a.lr - a.lr_end) * .5 * (1 + math.cos(math.pi * fr_)))
    for g in opt.param_groups: g["lr"] = lr
    nctx = R.choices([c for c, _ in CT], [w for _, w in CT])[0]
    B = max(2, round(a.frames / nctx * (1 if nctx < 800 else .7)))
    td = time.time(); mel, si, ti, phs, cws, sil, guide, st = batch(2 * nctx, B); tdata += time.time() - td
    off = 0 if (nctx >= 1500 or R.random() < a.off0) else R.randint(0, 1500 - nctx)
    zp = 36 if R.random() < .7 else 0   # whisper.cpp with flash attention: 1536 - 1500 zero keys
    with torch.autocast("cpu", dtype=torch.bfloat16, enabled=not a.fp32):
        xa, mid = net.encoder(mel, off, zp, mid=min(1, cfg["le"] - 1))
        h = net.decoder(si, xa, zp)
        k = ti != -100
        lg = net.decoder.logits(h[k]); tg = ti[k]
        if a.startw > 1 and st:
            wt = torch.ones_like(ti, dtype=torch.float32); wt[[b for b, _ in st], [p for _, p in st]] = a.startw
            ce = (F.cross_entropy(lg, tg, reduction="none") * wt[k]).sum() / k.sum()
        else: ce = F.cross_entropy(lg, tg)
        loss = ce; lp = lw = None
        if sil:                                                      # with <|nospeech|> and end of text suppressed (as whisper does) no word may be likely
            ls = net.decoder.logits(h[[b for b, _ in sil], [p for _, p in sil]])
            ls[:, [W.IDX[G.NOSP], W.IDX[G.EOT]]] = -1e4
            lo = F.cross_entropy(ls, torch.full((len(sil),), W.NU), reduction="sum") / len(sil); loss = loss + .1 * lo; acc.setdefault("sil", []).append(lo.item())
        for L, gd in (enumerate(guide + guide[1:] * (cfg['ld'] - 2)) if a.guide > 0 and guide[0] else ()):   # layer 0 looks at the word just written, the others at the next one
            ca = net.decoder.blocks[L].cross_attn; gt = torch.tensor(gd); bi, pi = gt[:, 0].long(), gt[:, 1].long()
            w = ca.w[bi, :2, pi].float(); wg = gt[:, 4:5]; fr_i = torch.arange(w.shape[-1])
            m = (fr_i >= gt[:, 2:3]) & (fr_i <= gt[:, 3:4]) & (fr_i < nctx)
            lg_ = (-torch.log((w * m[:, None]).sum(-1).clamp(min=1e-3)) * wg).sum() / (2 * wg.sum()); loss = loss + a.guide * lg_; acc.setdefault("g%d" % L, []).append(lg_.item())
        if a.guide > 0 and guide[0] and cfg["ld"] > 3:                # two more heads of layer 1 refine the place of the word just written
            gt = torch.tensor(guide[0]); w = net.decoder.blocks[1].cross_attn.w[gt[:, 0].long(), 2:, gt[:, 1].long()].float(); fr_i = torch.arange(w.shape[-1])
            m = (fr_i >= gt[:, 2:3]) & (fr_i <= gt[:, 3:4]) & (fr_i < nctx)
            lg_ = -torch.log((w * m[:, None]).sum(-1).clamp(min=1e-3)).mean(); loss = loss + a.guide * lg_; acc.setdefault("g1own", []).append(lg_.item())
        if a.ctc > 0:
            lp, lw = ctc(net.ph(mid), phs), ctc(net.cw(xa), cws); loss = loss + a.ctc * (lp + lw)
    opt.zero_grad(set_to_none=True); loss.backward()
    gn = torch.nn.utils.clip_grad_norm_(net.parameters(), 1.0); step += 1
    if not torch.isfinite(gn): print('skip: gradient', gn.item(), 'ce', ce.item(), flush=True); bad = bad + 1; assert bad < 20; continue
    opt.step()
    acc.setdefault("ce", []).append(ce.item()); acc.setdefault("acc", []).append((lg.argmax(-1) == tg).float().mean().item())
    if lp is not None: acc.setdefault("ph", []).append(lp.item()); acc.setdefault("cw", []).append(lw.item())
    if step % 50 == 0 or step == 5:
        print("step %d  %.1f min  lr %.1e  %s  grad %.2f  %.3f s/step (data %.3f)" % (step, el, lr, "  ".join("%s %.3f" % (k, sum(v) / len(v)) for k, v in acc.items()), gn, (time.time() - last) / max(1, len(acc["ce"])), tdata / max(1, len(acc["ce"]))), flush=True)
        acc = {}; last = time.time(); tdata = 0
    if time.time() - saved > 240: save(); saved = time.time()
save(); print("done", step, flush=True)
