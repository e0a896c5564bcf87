# SPDX-License-Identifier: MIT
# whisper's architecture (same tensor names), small, with an output restricted to the used tokens while training
import math, torch, torch.nn as nn, torch.nn.functional as F
import grammar as G, fast

USED = [G.EOT, G.SOT, *G.LANG.values(), G.TRANSLATE, G.TRANSCRIBE, G.PREV, G.NOSP, G.NOT] \
     + [G.TOK[p.encode()] for p in G.PUNCT] + [G.WORD0 + i for i in range(len(G.WORDS))]
IDX = {t: i for i, t in enumerate(USED)}
NU = len(USED)                       # index NU = every other token (zero vector, zero logit)
LOGMASS = math.log(G.N_VOCAB - NU)
def ix(t): return IDX.get(t, NU)

def sinusoids(length, d):
    inv = torch.exp(-math.log(10000) / (d // 2 - 1) * torch.arange(d // 2))
    t = torch.arange(length)[:, None] * inv[None]
    return torch.cat([t.sin(), t.cos()], 1)

class GELU(nn.Module):
    def forward(s, x): return fast.gelu(x)

class Attn(nn.Module):
    def __init__(s, d, h):
        super().__init__(); s.h = h; s.keep = False; s.w = None
        s.query, s.key, s.value, s.out = nn.Linear(d, d), nn.Linear(d, d, bias=False), nn.Linear(d, d), nn.Linear(d, d)
    def forward(s, x, kv=None, mask=None, zpad=0):
        kv = x if kv is None else kv
        B, T, d = x.shape; S = kv.shape[1]; hd = d // s.h
        q = s.query(x).view(B, T, s.h, hd).transpose(1, 2) * hd ** -0.5
        k = s.key(kv).view(B, S, s.h, hd).transpose(1, 2); v = s.value(kv).view(B, S, s.h, hd).transpose(1, 2)
        if zpad: k = F.pad(k, (0, 0, 0, zpad)); v = F.pad(v, (0, 0, 0, zpad))       # whisper.cpp's flash attention pads the keys with zeros, unmasked
        w = q @ k.transpose(-1, -2)
        if mask is not None: w = w + mask
        w = fast.softmax(w) if mask is None else torch.softmax(w, -1)
        if s.keep: s.w = w
        return s.out((w.to(v.dtype) @ v).transpose(1, 2).reshape(B, T, d))

class Block(nn.Module):
    def __init__(s, d, h, cross):
        super().__init__()
        s.attn, s.attn_ln = Attn(d, h), nn.LayerNorm(d)
        s.cross_attn, s.cross_attn_ln = (Attn(d, h), nn.LayerNorm(d)) if cross else (None, None)
        s.mlp, s.mlp_ln = nn.Sequential(nn.Linear(d, 4 * d), GELU(), nn.Linear(4 * d, d)), nn.LayerNorm(d)
    def forward(s, x, xa=None, mask=None, zpad=0):
        x = x + s.attn(s.attn_ln(x), mask=mask, zpad=zpad if xa is None else 0)
        if xa is not None: x = x + s.cross_attn(s.cross_attn_ln(x), xa, zpad=zpad)
        return x + s.mlp(s.mlp_ln(x))

class Encoder(nn.Module):
    def __init__(s, d, h, L, n_ctx=1500, n_mels=80):
        super().__init__()
        s.conv1, s.conv2 = nn.Conv1d(n_mels, d, 3, padding=1), nn.Conv1d(d, d, 3, stride=2, padding=1)
        s.blocks = nn.ModuleList([Block(d, h, False) for _ in range(L)]); s.ln_post = nn.LayerNorm(d)
        s.register_buffer("positional_embedding", sinusoids(n_ctx, d))
    def conv(s, c, x, stride):                                    # x [B, T, C], as one matrix product
        x = F.pad(x, (0, 0, 1, 1)); T = x.shape[1] - 2
        x = torch.cat([x[:, 0:T:stride], x[:, 1:T + 1:stride], x[:, 2:T + 2:stride]], 2)
        return fast.gelu(F.linear(x, c.weight.permute(0, 2, 1).reshape(c.weight.shape[0], -1), c.bias))
    def forward(s, mel, off=0, zpad=0, mid=None):
        x = s.conv(s.conv2, s.conv(s.conv1, mel, 1), 2)
        x = x + s.positional_embedding[off:off + x.shape[1]]
        for i, b in enumerate(s.blocks):
            x = b(x, zpad=zpad)
            if i == mid: m = x
        x = s.ln_post(x)
        return (x, m) if mid is not None else x

class Decoder(nn.Module):
    def __init__(s, d, h, L, n_ctx=448):
        super().__init__()
        s.emb = nn.Parameter(torch.randn(NU, d) * 0.05)
        s.positional_embedding = nn.Parameter(sinusoids(n_ctx, d) * 0.3)
        s.blocks = nn.ModuleList([Block(d, h, True) for _ in range(L)]); s.ln = nn.LayerNorm(d)
    def forward(s, tok, xa, zpad=0):
        e = torch.cat([s.emb, s.emb.new_zeros(1, s.emb.shape[1])])
        x = e[tok] + s.positional_embedding[:tok.shape[1]]
        T = tok.shape[1]; mask = torch.full((T, T), float("-inf")).triu(1)
        for b in s.blocks: x = b(x, xa, mask=mask, zpad=zpad)
        return s.ln(x)
    def logits(s, x):                                             # [.., NU + 1], the last column is the mass of the unused tokens
        l = F.linear(x, s.emb).float()
        return torch.cat([l, l.new_full((*l.shape[:-1], 1), LOGMASS)], -1)

class Whisper(nn.Module):
    def __init__(s, d=128, h=4, le=3, ld=2, n_ph=0, n_cw=0):
        super().__init__(); s.cfg = dict(d=d, h=h, le=le, ld=ld, n_ph=n_ph, n_cw=n_cw)
        s.encoder, s.decoder = Encoder(d, h, le), Decoder(d, h, ld)
        s.ph, s.cw = (nn.Linear(d, n_ph) if n_ph else None), (nn.Linear(d, n_cw) if n_cw else None)   # CTC helpers, training only
        s.relative_init(d, h)
    def relative_init(s, d, h, gain=1.3):
        """start most encoder heads as 'look delta frames away' through the sinusoidal positions"""
        hd = d // h; nf = d // 2; inv = torch.exp(-math.log(10000) / (nf - 1) * torch.arange(nf))
        offs = [[-2, 2, -5, 5], [-4, 4, -9, 9], [-14, 14, None, None], [None] * 4]
        with torch.no_grad():
            for L, b in enumerate(s.encoder.blocks):
                for k in range(h):
                    dl = offs[min(L, 3)][k % 4]
                    if dl is None: continue
                    f = torch.arange(hd // 2) * 2                        # 16 frequencies, periods 6 .. 400 frames
                    for j, fi in enumerate(f.tolist()):
                        c, sn = math.cos(inv[fi] * dl), math.sin(inv[fi] * dl); r = k * hd + 2 * j
                        Wk, Wq = b.attn.key.weight, b.attn.query.weight
                        Wk[r].mul_(.1); Wk[r + 1].mul_(.1); Wq[r].mul_(.1); Wq[r + 1].mul_(.1)
                        Wk[r, fi] += gain; Wk[r + 1, nf + fi] += gain     # (sin, cos) of the key's position
                        Wq[r, fi] += gain * c; Wq[r, nf + fi] += gain * sn        # sin(a+d) = sin a cos d + cos a sin d
                        Wq[r + 1, nf + fi] += gain * c; Wq[r + 1, fi] -= gain * sn  # cos(a+d)
