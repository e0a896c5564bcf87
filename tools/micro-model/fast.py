# SPDX-License-Identifier: MIT
import ctypes, os, torch
L = ctypes.CDLL(os.path.join(os.path.dirname(os.path.abspath(__file__)), "libfast.so"))
P = lambda t: ctypes.c_void_p(t.data_ptr()); I = ctypes.c_int64
class Gelu(torch.autograd.Function):
    @staticmethod
    def forward(ctx, x):
        x = x.contiguous(); y = torch.empty_like(x); L.gelu_f(P(x), P(y), I(x.numel()), torch.get_num_threads()); ctx.save_for_backward(x); return y
    @staticmethod
    def backward(ctx, g):
        x, = ctx.saved_tensors; g = g.to(x.dtype).contiguous(); d = torch.empty_like(x); L.gelu_b(P(x), P(g), P(d), I(x.numel()), torch.get_num_threads()); return d
class Softmax(torch.autograd.Function):
    @staticmethod
    def forward(ctx, x):
        x = x.contiguous(); y = torch.empty_like(x); n = x.shape[-1]; L.softmax_f(P(x), P(y), I(x.numel() // n), I(n), torch.get_num_threads()); ctx.save_for_backward(y); return y
    @staticmethod
    def backward(ctx, g):
        y, = ctx.saved_tensors; g = g.to(y.dtype).contiguous(); d = torch.empty_like(y); n = y.shape[-1]; L.softmax_b(P(y), P(g), P(d), I(y.numel() // n), I(n), torch.get_num_threads()); return d
def gelu(x):
    return Gelu.apply(x) if x.dtype == torch.bfloat16 else torch.nn.functional.gelu(x, approximate="tanh")
def softmax(x):
    return Softmax.apply(x) if x.dtype == torch.bfloat16 else torch.softmax(x, -1)
if __name__ == "__main__":
    import time
    torch.manual_seed(0)
    x = torch.randn(7200, 512).bfloat16().requires_grad_(); g = torch.randn(7200, 512).bfloat16()
    x2 = x.detach().float().requires_grad_()
    gelu(x).backward(g); torch.nn.functional.gelu(x2, approximate="tanh").backward(g.float()); print((x.grad.float() - x2.grad).abs().max())
    x.grad = x2.grad = None; (softmax(x)).backward(g); torch.softmax(x2, -1).backward(g.float()); print((x.grad.float() - x2.grad).abs().max())
    for f in (gelu, softmax):
        t = time.time()
        for _ in range(10): y = f(x)
        a = (time.time() - t) / 10; t = time.time()
        for _ in range(10): f(x).backward(g)
        print(f.__name__, "fwd %.2f ms  bwd %.2f ms" % (a * 1e3, ((time.time() - t) / 10 - a) * 1e3))
