# SPDX-License-Identifier: MIT
# export.py ckpt.pt out.bin [f16|f32|q8_0|q5_0|q5_1|q4_0]  -> whisper.cpp ggml model file
import sys, struct, numpy as np, torch
import grammar as G, melspec as M, model as W
src, dst, ty = sys.argv[1], sys.argv[2], (sys.argv[3] if len(sys.argv) > 3 else "f16")
FT = dict(f32=0, f16=1, q4_0=2, q8_0=7, q5_0=8, q5_1=9)[ty]         # ggml_ftype (file header)
TT = dict(f32=0, f16=1, q4_0=2, q5_0=6, q5_1=7, q8_0=8)[ty]         # ggml_type (tensor header)
QV = 2                                                              # GGML_QNT_VERSION

def quant(x):                                                       # x float32 [rows, cols], cols % 32 == 0
    if ty == "f32": return x.astype("<f4").tobytes()
    if ty == "f16": return x.astype("<f2").tobytes()
    b = x.reshape(-1, 32).astype(np.float32); n = len(b)
    if ty == "q8_0":
        d = np.abs(b).max(1) / 127; q = np.round(b * np.where(d > 0, 1 / np.maximum(d, 1e-30), 0)[:, None]).astype(np.int8)
        return np.concatenate([d.astype("<f2").view(np.uint8).reshape(n, 2), q.view(np.uint8)], 1).tobytes()
    k = np.abs(b).argmax(1); mx = b[np.arange(n), k]
    if ty == "q4_0":
        d = mx / -8; i = np.where(d != 0, 1 / np.where(d == 0, 1, d), 0)[:, None]
        q = np.clip((b * i + 8.5).astype(np.int32), 0, 15).astype(np.uint8)
        return np.concatenate([d.astype("<f2").view(np.uint8).reshape(n, 2), q[:, :16] | (q[:, 16:] << 4)], 1).tobytes()
    if ty == "q5_0":
        d = mx / -16; i = np.where(d != 0, 1 / np.where(d == 0, 1, d), 0)[:, None]
        q = np.clip((b * i + 16.5).astype(np.int32), 0, 31).astype(np.uint32); head = d.astype("<f2").view(np.uint8).reshape(n, 2)
    else:
        lo = b.min(1); d = (b.max(1) - lo) / 31; i = np.where(d != 0, 1 / np.where(d == 0, 1, d), 0)[:, None]
        q = np.clip(((b - lo[:, None]) * i + .5).astype(np.int32), 0, 31).astype(np.uint32)
        head = np.concatenate([d.astype("<f2").view(np.uint8).reshape(n, 2), lo.astype("<f2").view(np.uint8).reshape(n, 2)], 1)
    qh = (((q >> 4) & 1) << np.arange(32, dtype=np.uint32)).sum(1).astype("<u4").view(np.uint8).reshape(n, 4)
    ql = ((q[:, :16] & 15) | ((q[:, 16:] & 15) << 4)).astype(np.uint8)
    return np.concatenate([head, qh, ql], 1).tobytes()

ck = torch.load(src); c = ck["cfg"]; net = ck["net"]; d = c["d"]
f = open(dst, "wb"); wi = lambda *v: f.write(struct.pack("<%di" % len(v), *v))
wi(0x67676d6c, G.N_VOCAB, 1500, d, c["h"], c["le"], 448, d, c["h"], c["ld"], 80, FT + (1000 * QV if ty[0] == "q" else 0))
wi(*M.FILT.shape); f.write(M.FILT.astype("<f4").tobytes())
n_base = 50257                                                      # base tokens; the special tokens are added by the loader
wi(n_base)
for i in range(n_base):
    s = G.ID2STR.get(i, b""); wi(len(s)); f.write(s)

emb = torch.zeros(G.N_VOCAB, d); emb[torch.tensor(W.USED)] = net["decoder.emb"]
emb[0] = .95 * emb[G.NOSP]                                          # token 0 is the empty string: the first token of silence (whisper.cpp suppresses <|nospeech|> and, first, end of text)
T = {"decoder.token_embedding.weight": emb, "decoder.positional_embedding": net["decoder.positional_embedding"], "encoder.positional_embedding": net["encoder.positional_embedding"]}
for k, v in net.items():
    if k in ("decoder.emb", "decoder.positional_embedding", "encoder.positional_embedding") or k.startswith(("ph.", "cw.")): continue
    T[k] = v
for k, v in T.items():
    x = v.float().numpy()
    if k in ("encoder.conv1.bias", "encoder.conv2.bias"): x = x.reshape(-1, 1)
    small = x.ndim < 2 or "positional" in k or k.endswith(("conv1.bias", "conv2.bias"))
    if "positional" in k: x = x.astype("<f2")                       # fewer mantissa bits, so that the file compresses
    if small: t, b = 0, x.astype("<f4").tobytes()
    elif "conv" in k: t, b = (0, x.astype("<f4").tobytes()) if ty == "f32" else (1, x.astype("<f2").tobytes())
    else: t, b = TT, quant(x)
    n = k.encode(); wi(x.ndim, len(n), t); wi(*x.shape[::-1]); f.write(n); f.write(b)
f.close()
import os, gzip; print(dst, ty, len(T), "tensors", os.path.getsize(dst), "bytes, gzip", len(gzip.compress(open(dst, "rb").read(), 6)))
