# SPDX-License-Identifier: MIT
# A block of the network with its derivative by hand: matrix products in bf16, all between them in fast.c.
import ctypes, os, torch
L = ctypes.CDLL(os.path.join(os.path.dirname(os.path.abspath(__file__)), "libfast.so")); I = ctypes.c_int64
def P(t): return None if t is None else ctypes.c_void_p(t.data_ptr())
BF = torch.bfloat16

class Block(torch.autograd.Function):
    @staticmethod
    def forward(ctx, x, n1, qkv, out, n2, gu, down, cos, sin, shape):
        B, N = shape; M, d = x.shape; ff = down.shape[1]; e = lambda *s: torch.empty(s, dtype=BF)
        wq, wo, wg, wd = qkv.to(BF), out.to(BF), gu.to(BF), down.to(BF)
        y1, r1, o = e(M, d), torch.empty(M), e(M, d)
        L.norm_f(P(x), None, P(n1), P(y1), P(r1), I(M), I(d))
        a = y1 @ wq.T
        L.attention_f(P(a), P(cos), P(sin), P(o), I(B), I(N), I(d))
        x2 = x.clone(); y2, r2, s = e(M, d), torch.empty(M), e(M, ff)
        t = o @ wo.T; L.norm_f(P(x2), P(t), P(n2), P(y2), P(r2), I(M), I(d))
        g = y2 @ wg.T
        L.swiglu_f(P(g), P(s), I(M), I(ff))
        ctx.save_for_backward(x, n1, n2, wq, wo, wg, wd, y1, r1, a, o, x2, y2, r2, g, s, cos, sin); ctx.shape = shape
        return x2 + s @ wd.T
    @staticmethod
    def backward(ctx, gx):
        x, n1, n2, wq, wo, wg, wd, y1, r1, a, o, x2, y2, r2, g, s, cos, sin = ctx.saved_tensors; B, N = ctx.shape; M, d = x.shape; ff = wd.shape[1]
        gx = gx.contiguous().clone(); gb = gx.to(BF); d1, d2 = torch.zeros(d), torch.zeros(d)
        dwd = gb.T @ s; ds = gb @ wd; dg = torch.empty_like(g); L.swiglu_b(P(g), P(ds), P(dg), I(M), I(ff))
        dwg = dg.T @ y2; dy = dg @ wg; L.norm_b(P(x2), P(n2), P(r2), P(dy), P(gx), P(gb), P(d2), I(M), I(d))
        dwo = gb.T @ o; do = gb @ wo; da = torch.empty_like(a); L.attention_b(P(a), P(cos), P(sin), P(do), P(da), I(B), I(N), I(d))
        dwq = da.T @ y1; dy = da @ wq; L.norm_b(P(x), P(n1), P(r1), P(dy), P(gx), P(gb), P(d1), I(M), I(d))
        return gx, d1, dwq.float(), dwo.float(), d2, dwg.float(), dwd.float(), None, None, None

def block(b, x, cos, sin, shape):
    return Block.apply(x, b.attn_norm, torch.cat([b.attn_q, b.attn_k, b.attn_v]), b.attn_output, b.ffn_norm, torch.cat([b.ffn_gate, b.ffn_up]), b.ffn_down, cos, sin, shape)

if __name__ == "__main__":                                              # against the plain one
    import time, model
    torch.set_num_threads(1); torch.manual_seed(0); net = model.Llama(); ids = torch.randint(0, 2000, (90, 40)); where = torch.arange(0, 3600, 3); w = torch.randn(1200, 2166)
    grads = []
    for dt in (torch.float32, BF):
        net.zero_grad(); y = net(ids, where, dt); (y * w).mean().backward(); grads.append((y.detach(), {k: p.grad.clone() for k, p in net.named_parameters()}))
    (a, g), (b, h) = grads; print("output", ((a - b).norm() / a.norm()).item())
    print({k: round(((g[k] - h[k]).norm() / g[k].norm()).item(), 4) for k in g if k.startswith(("blocks.0", "blocks.3", "e_"))})
    for dt in (torch.float32, BF):
        t = time.process_time()
        for _ in range(4): net(ids, where, dt).mean().backward()
        print(dt, 4 * 3600 / (time.process_time() - t), "tokens per second of processor time")
