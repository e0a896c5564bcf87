# SPDX-License-Identifier: MIT
# export.py CHECKPOINT FILE: writes the network as a model file (GGUF, q8_0).
import struct, sys, numpy as np, torch
import model as M, tokens as T

NORMAL, CONTROL = 1, 3
F32, Q8_0 = 0, 8
CONTEXT = 1024

def escaped(b):
    """as the tokeniser's reader wants it: what is no printable text as \\xNN"""
    try: s = b.decode()
    except UnicodeDecodeError: return "".join(f"\\x{c:02x}" for c in b)
    return "".join("\\\\" if c == "\\" else f"\\x{ord(c):02x}" if ord(c) < 32 or ord(c) == 127 else c for c in s)

def text(s): b = s.encode(); return struct.pack("<Q", len(b)) + b
def value(v):
    if isinstance(v, bool): return struct.pack("<IB", 7, v)
    if isinstance(v, str): return struct.pack("<I", 8) + text(v)
    if isinstance(v, int): return struct.pack("<II", 4, v)
    if isinstance(v, float): return struct.pack("<If", 6, v)
    if isinstance(v[0], str): return struct.pack("<IIQ", 9, 8, len(v)) + b"".join(map(text, v))
    return struct.pack("<IIQ", 9, 5, len(v)) + struct.pack(f"<{len(v)}i", *v)

def q8_0(a):
    """blocks of 32 whole numbers of 8 bits, with a factor of 16 bits before each"""
    b = a.reshape(-1, 32); d = (np.abs(b).max(1) / 127).astype(np.float16); f = d.astype(np.float32); f[f == 0] = 1
    q = np.clip(np.round(b / f[:, None]), -127, 127).astype(np.int8); out = np.empty((len(b), 34), np.uint8)
    out[:, :2] = d[:, None].view(np.uint8); out[:, 2:] = q.view(np.uint8); return out.tobytes()

def tensors(net):
    yield "token_embd.weight", Q8_0, net.embedding()
    for i, b in enumerate(net.blocks):
        for n, p in b.named_parameters(): yield f"blk.{i}.{n}.weight", F32 if p.dim() == 1 else Q8_0, p
    yield "output_norm.weight", F32, net.output_norm

def main(checkpoint, path):
    ck = torch.load(checkpoint); net = M.Llama(**ck["cfg"]); net.load_state_dict(ck["ema"]); c = ck["cfg"]; V = T.VOCABULARY
    head = {"general.architecture": "llama", "general.name": "Talvera micro language model", "general.license": "mit",
            "general.languages": list(T.P.LANGUAGES), "general.file_type": 7, "general.quantization_version": 2,
            "general.sampling.top_k": 1,                                     # the likeliest token, unless a request says otherwise
            "llama.context_length": CONTEXT, "llama.embedding_length": c["d"], "llama.block_count": c["layers"], "llama.feed_forward_length": c["ff"],
            "llama.attention.head_count": c["d"] // M.HEAD, "llama.attention.head_count_kv": c["d"] // M.HEAD,
            "llama.attention.layer_norm_rms_epsilon": 1e-5, "llama.rope.dimension_count": M.HEAD, "llama.rope.freq_base": 10000.0, "llama.vocab_size": len(V),
            "tokenizer.chat_template": T.TEMPLATE, "tokenizer.ggml.model": "rwkv", "tokenizer.ggml.add_bos_token": False,
            "tokenizer.ggml.eos_token_id": T.ID[T.END.encode()],
            "tokenizer.ggml.tokens": [escaped(t[0]) for t in V], "tokenizer.ggml.token_type": [CONTROL if t[1] else NORMAL for t in V]}
    infos = data = b""; count = 0
    for name, kind, p in tensors(net):
        a = p.detach().float().numpy(); infos += text(name) + struct.pack(f"<I{a.ndim}QIQ", a.ndim, *a.shape[::-1], kind, len(data)); count += 1
        data += q8_0(a) if kind == Q8_0 else a.astype("<f4").tobytes(); data += bytes(-len(data) % 32)
    out = struct.pack("<4sIQQ", b"GGUF", 3, count, len(head)) + b"".join(text(k) + value(v) for k, v in head.items()) + infos
    open(path, "wb").write(out + bytes(-len(out) % 32) + data)

main(*sys.argv[1:])
