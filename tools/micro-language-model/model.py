# SPDX-License-Identifier: MIT
# The llama architecture, small.
import math, torch, torch.nn as nn, torch.nn.functional as F
import fast, tokens as T

HEAD = 32

def norm(x, w): return (x.float() * torch.rsqrt(x.float().pow(2).mean(-1, keepdim=True) + 1e-5)).to(x.dtype) * w.to(x.dtype)

class Block(nn.Module):
    def __init__(s, d, ff, layers):
        super().__init__()
        def w(o, i, gain=1.0): return nn.Parameter(torch.randn(o, i) * gain / math.sqrt(i))
        s.attn_norm, s.ffn_norm = nn.Parameter(torch.ones(d)), nn.Parameter(torch.ones(d))
        s.attn_q, s.attn_k, s.attn_v, s.attn_output = w(d, d), w(d, d), w(d, d), w(d, d, .5 / math.sqrt(layers))
        s.ffn_gate, s.ffn_up, s.ffn_down = w(ff, d), w(ff, d), w(d, ff, .5 / math.sqrt(layers))
    def forward(s, x, cos, sin, mask):
        B, N, d = x.shape; h = d // HEAD; t = x.dtype
        y = norm(x, s.attn_norm)
        q, k, v = F.linear(y, torch.cat([s.attn_q, s.attn_k, s.attn_v]).to(t)).view(B, N, 3, h, HEAD).permute(2, 0, 3, 1, 4)
        q, k = rotate(q, cos, sin), rotate(k, cos, sin)
        a = torch.softmax((q @ k.transpose(-1, -2)).float() * HEAD ** -0.5 + mask, -1).to(v.dtype)
        x = x + F.linear((a @ v).transpose(1, 2).reshape(B, N, d), s.attn_output.to(t))
        y = norm(x, s.ffn_norm)
        return x + F.linear(F.silu(F.linear(y, s.ffn_gate.to(t))) * F.linear(y, s.ffn_up.to(t)), s.ffn_down.to(t))

def rotate(x, cos, sin):
    a, b = x[..., 0::2], x[..., 1::2]
    return torch.stack([a * cos - b * sin, a * sin + b * cos], -1).flatten(-2)

class Llama(nn.Module):
    """The embedding of a word's form is the sum of the word's, the form's and a rest of its own, so that a word that was seen
    within a text is known at its beginning; a finished model has the sums."""
    def __init__(s, d=128, layers=4, ff=384):
        super().__init__(); s.cfg = dict(d=d, layers=layers, ff=ff)
        bases = {}
        s.register_buffer("base", torch.tensor([bases.setdefault(w if w is not None else i, len(bases)) for i, (_, _, w, _) in enumerate(T.VOCABULARY)]), False)
        s.register_buffer("form", torch.tensor([f if w is not None else 4 for _, _, w, f in T.VOCABULARY]), False)
        s.e_base, s.e_form = nn.Parameter(torch.randn(len(bases), d) * .5), nn.Parameter(torch.randn(5, d) * .5)
        s.e_rest = nn.Parameter(torch.randn(len(T.VOCABULARY), d) * .1)
        s.blocks = nn.ModuleList([Block(d, ff, layers) for _ in range(layers)]); s.output_norm = nn.Parameter(torch.ones(d) / math.sqrt(d))
        f = 10000.0 ** (-torch.arange(0, HEAD, 2) / HEAD); t = torch.arange(1024)[:, None] * f
        s.register_buffer("cos", t.cos(), False); s.register_buffer("sin", t.sin(), False)
    def embedding(s): return s.e_base[s.base] + s.e_form[s.form] + s.e_rest
    def forward(s, ids, where, dtype=torch.float32):
        """logits at the places `where` of the flattened batch"""
        N = ids.shape[1]; e = s.embedding(); x = F.embedding(ids, e).to(dtype)
        mask = torch.full((N, N), float("-inf")).triu(1); cos, sin = s.cos[:N].to(dtype), s.sin[:N].to(dtype)
        if dtype == torch.bfloat16:                                     # the quick way
            x = F.embedding(ids, e).flatten(0, 1)
            for b in s.blocks: x = fast.block(b, x, s.cos, s.sin, ids.shape)
            return F.linear((norm(x[where], s.output_norm)).to(dtype), e.to(dtype)).float()
        for b in s.blocks: x = b(x, cos, sin, mask)
        return F.linear(norm(x.flatten(0, 1)[where], s.output_norm), e).float()
