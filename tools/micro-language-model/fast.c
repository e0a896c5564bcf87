// SPDX-License-Identifier: MIT
// What a block of the network does beside its matrix products, fused, for training. Activations are bf16, the sums float.
#include <math.h>
#include <stdint.h>
#include <string.h>
typedef uint16_t bf;
enum { C = 32, MOST = 1024 };                                   // width of a head, longest text
static inline float up(bf x) { union { uint32_t u; float f; } v; v.u = (uint32_t)x << 16; return v.f; }
static inline bf dn(float f) { union { uint32_t u; float f; } v; v.f = f; return (bf)((v.u + 0x7fff + ((v.u >> 16) & 1)) >> 16); }

// x += a where a is given; y = norm(x) * w
void norm_f(float *x, const bf *a, const float *w, bf *y, float *rs, int64_t rows, int64_t d) {
    for (int64_t r = 0; r < rows; r++) {
        float *p = x + r * d; bf *o = y + r * d; float s = 0;
        if (a) { const bf *q = a + r * d; for (int64_t i = 0; i < d; i++) p[i] += up(q[i]); }
        for (int64_t i = 0; i < d; i++) s += p[i] * p[i];
        s = 1.f / sqrtf(s / d + 1e-5f); rs[r] = s;
        for (int64_t i = 0; i < d; i++) o[i] = dn(p[i] * s * w[i]);
    }
}
// g += what comes back through the norm; gb = g as bf16; dw += for the weights
void norm_b(const float *x, const float *w, const float *rs, const bf *dy, float *g, bf *gb, float *dw, int64_t rows, int64_t d) {
    for (int64_t r = 0; r < rows; r++) {
        const float *p = x + r * d; const bf *q = dy + r * d; float *o = g + r * d; bf *ob = gb + r * d; float s = rs[r], dot = 0;
        for (int64_t i = 0; i < d; i++) { float t = up(q[i]); dw[i] += t * p[i] * s; dot += t * w[i] * p[i]; }
        dot *= s * s * s / d;
        for (int64_t i = 0; i < d; i++) { o[i] += up(q[i]) * w[i] * s - p[i] * dot; ob[i] = dn(o[i]); }
    }
}
void swiglu_f(const bf *gu, bf *y, int64_t rows, int64_t ff) {
    for (int64_t r = 0; r < rows; r++) {
        const bf *g = gu + r * 2 * ff, *u = g + ff; bf *o = y + r * ff;
        for (int64_t i = 0; i < ff; i++) { float v = up(g[i]); v = v < -60.f ? -60.f : v; o[i] = dn(v / (1.f + expf(-v)) * up(u[i])); }
    }
}
void swiglu_b(const bf *gu, const bf *dy, bf *dgu, int64_t rows, int64_t ff) {
    for (int64_t r = 0; r < rows; r++) {
        const bf *g = gu + r * 2 * ff, *u = g + ff, *q = dy + r * ff; bf *dg = dgu + r * 2 * ff, *du = dg + ff;
        for (int64_t i = 0; i < ff; i++) {
            float v = up(g[i]); v = v < -60.f ? -60.f : v; float s = 1.f / (1.f + expf(-v)), t = up(q[i]);
            du[i] = dn(t * v * s); dg[i] = dn(t * up(u[i]) * s * (1.f + v * (1.f - s)));
        }
    }
}

// one head of one text: queries, keys and values with their rotation, and the columns of keys and values. A row of
// columns is a little longer than a power of two, or they would all fall on the same lines of the cache.
typedef float v16 __attribute__((vector_size(64)));
enum { LONG = MOST + 16 };
static _Thread_local float Q[MOST][C] __attribute__((aligned(64))), K[MOST][C] __attribute__((aligned(64))), V[MOST][C] __attribute__((aligned(64))),
    KT[C][LONG] __attribute__((aligned(64))), VT[C][LONG] __attribute__((aligned(64))), DK[MOST][C] __attribute__((aligned(64))),
    DV[MOST][C] __attribute__((aligned(64))), DQ[MOST][C] __attribute__((aligned(64)));
static const float scale = 0.17677669529663687f; // 1 / sqrt(C)
static void load(const bf *qkv, const float *cs, const float *sn, int64_t n, int64_t d, int64_t h) {
    for (int64_t t = 0; t < n; t++) {
        const bf *q = qkv + t * 3 * d + h * C, *k = q + d, *v = k + d; const float *c = cs + t * C / 2, *s = sn + t * C / 2;
        for (int i = 0; i < C / 2; i++) {
            float a = up(q[2 * i]), b = up(q[2 * i + 1]);
            Q[t][2 * i] = (a * c[i] - b * s[i]) * scale; Q[t][2 * i + 1] = (a * s[i] + b * c[i]) * scale;
            a = up(k[2 * i]), b = up(k[2 * i + 1]);
            K[t][2 * i] = a * c[i] - b * s[i]; K[t][2 * i + 1] = a * s[i] + b * c[i];
        }
        for (int i = 0; i < C; i++) V[t][i] = up(v[i]);
        for (int i = 0; i < C; i++) { KT[i][t] = K[t][i]; VT[i][t] = V[t][i]; }
    }
}
// p[j] = sum over i of a[i] * T[i][j], for the first n of j and up to 15 more
static inline void product(const float *a, float (*T)[LONG], float *p, int64_t n) {
    int64_t j = 0;
    for (; j < n; j += 16) {
        v16 x = {0}, y = {0};
        for (int i = 0; i < C; i += 2) { x += a[i] * *(v16 *)&T[i][j]; y += a[i + 1] * *(v16 *)&T[i + 1][j]; }
        *(v16 *)&p[j] = x + y;
    }
}
static inline void weights(int64_t t, float *p) {
    int64_t n = t + 1, m16 = (n + 15) & ~15; float m = -1e30f, s = 0;
    product(Q[t], KT, p, n);
    for (int64_t j = n; j < m16; j++) p[j] = -1e30f;
    for (int64_t j = 0; j < m16; j++) m = p[j] > m ? p[j] : m;
    for (int64_t j = 0; j < m16; j++) { float z = p[j] - m; z = z < -80.f ? -80.f : z; p[j] = expf(z); }
    for (int64_t j = n; j < m16; j++) p[j] = 0;
    for (int64_t j = 0; j < m16; j++) s += p[j];
    s = 1.f / s;
    for (int64_t j = 0; j < m16; j++) p[j] *= s;
}
void attention_f(const bf *qkv, const float *cs, const float *sn, bf *out, int64_t batch, int64_t n, int64_t d) {
    float p[LONG] __attribute__((aligned(64)));
    for (int64_t b = 0; b < batch; b++) for (int64_t h = 0; h < d / C; h++) {
        load(qkv + b * n * 3 * d, cs, sn, n, d, h);
        for (int64_t t = 0; t < n; t++) {
            v16 x = {0}, y = {0}; weights(t, p);
            for (int64_t j = 0; j <= t; j++) { x += p[j] * *(v16 *)&V[j][0]; y += p[j] * *(v16 *)&V[j][16]; }
            bf *o = out + (b * n + t) * d + h * C; for (int i = 0; i < 16; i++) { o[i] = dn(x[i]); o[i + 16] = dn(y[i]); }
        }
    }
}
void attention_b(const bf *qkv, const float *cs, const float *sn, const bf *dout, bf *dqkv, int64_t batch, int64_t n, int64_t d) {
    float p[LONG] __attribute__((aligned(64))), dp[LONG] __attribute__((aligned(64)));
    for (int64_t b = 0; b < batch; b++) for (int64_t h = 0; h < d / C; h++) {
        load(qkv + b * n * 3 * d, cs, sn, n, d, h);
        memset(DK, 0, n * sizeof DK[0]); memset(DV, 0, n * sizeof DV[0]);
        for (int64_t t = 0; t < n; t++) {
            const bf *y = dout + (b * n + t) * d + h * C; float g[C] __attribute__((aligned(64))), s = 0;
            for (int i = 0; i < C; i++) g[i] = up(y[i]);
            weights(t, p); product(g, VT, dp, t + 1);
            for (int64_t j = 0; j <= t; j++) s += p[j] * dp[j];
            for (int64_t j = 0; j <= t; j++) dp[j] = p[j] * (dp[j] - s);
            v16 x = {0}, z = {0}, q0 = *(v16 *)&Q[t][0], q1 = *(v16 *)&Q[t][16], g0 = *(v16 *)&g[0], g1 = *(v16 *)&g[16];
            for (int64_t j = 0; j <= t; j++) {
                float a = dp[j], w = p[j];
                x += a * *(v16 *)&K[j][0]; z += a * *(v16 *)&K[j][16];
                *(v16 *)&DK[j][0] += a * q0; *(v16 *)&DK[j][16] += a * q1; *(v16 *)&DV[j][0] += w * g0; *(v16 *)&DV[j][16] += w * g1;
            }
            *(v16 *)&DQ[t][0] = x * scale; *(v16 *)&DQ[t][16] = z * scale;
        }
        for (int64_t t = 0; t < n; t++) {
            bf *q = dqkv + (b * n + t) * 3 * d + h * C, *k = q + d, *v = k + d; const float *c = cs + t * C / 2, *s = sn + t * C / 2;
            for (int i = 0; i < C / 2; i++) {
                float a = DQ[t][2 * i], e = DQ[t][2 * i + 1];
                q[2 * i] = dn(a * c[i] + e * s[i]); q[2 * i + 1] = dn(e * c[i] - a * s[i]);
                a = DK[t][2 * i], e = DK[t][2 * i + 1];
                k[2 * i] = dn(a * c[i] + e * s[i]); k[2 * i + 1] = dn(e * c[i] - a * s[i]);
            }
            for (int i = 0; i < C; i++) v[i] = dn(DV[t][i]);
        }
    }
}
