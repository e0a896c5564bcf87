// SPDX-License-Identifier: MIT
// fused elementwise kernels for training (bf16 in, bf16 out)
#include <stdint.h>
#include <string.h>
#include <math.h>
typedef uint16_t bf;
static inline float up(bf x){ union{uint32_t u; float f;} v; v.u=(uint32_t)x<<16; return v.f; }
static inline bf dn(float f){ union{uint32_t u; float f;} v; v.f=f; uint32_t u=v.u; return (bf)((u+0x7fff+((u>>16)&1))>>16); }
#define A 1.59576912161f
#define B 0.0713548162726f
void gelu_f(const bf*x, bf*y, int64_t n, int nt){
  #pragma omp parallel for simd num_threads(nt) schedule(static)
  for(int64_t i=0;i<n;i++){ float v=up(x[i]); float z=v*(A+B*v*v); z=z<-60.f?-60.f:z; y[i]=dn(v/(1.f+expf(-z))); }
}
void gelu_b(const bf*x, const bf*g, bf*d, int64_t n, int nt){
  #pragma omp parallel for simd num_threads(nt) schedule(static)
  for(int64_t i=0;i<n;i++){ float v=up(x[i]), v2=v*v; float z=v*(A+B*v2); z=z<-60.f?-60.f:(z>60.f?60.f:z); float s=1.f/(1.f+expf(-z));
    d[i]=dn(up(g[i])*s*(1.f+v*(1.f-s)*(A+3.f*B*v2))); }
}
void softmax_f(const bf*x, bf*y, int64_t rows, int64_t n, int nt){
  #pragma omp parallel for num_threads(nt) schedule(static)
  for(int64_t r=0;r<rows;r++){ const bf*a=x+r*n; bf*o=y+r*n; float t[2048]; float m=-1e30f, s=0;
    #pragma omp simd reduction(max:m)
    for(int64_t i=0;i<n;i++){ t[i]=up(a[i]); m = t[i]>m?t[i]:m; }
    #pragma omp simd reduction(+:s)
    for(int64_t i=0;i<n;i++){ t[i]=expf(t[i]-m); s+=t[i]; }
    s=1.f/s;
    #pragma omp simd
    for(int64_t i=0;i<n;i++) o[i]=dn(t[i]*s);
  }
}
void softmax_b(const bf*p, const bf*g, bf*d, int64_t rows, int64_t n, int nt){
  #pragma omp parallel for num_threads(nt) schedule(static)
  for(int64_t r=0;r<rows;r++){ const bf*a=p+r*n,*q=g+r*n; bf*o=d+r*n; float s=0;
    #pragma omp simd reduction(+:s)
    for(int64_t i=0;i<n;i++) s+=up(a[i])*up(q[i]);
    #pragma omp simd
    for(int64_t i=0;i<n;i++) o[i]=dn(up(a[i])*(up(q[i])-s));
  }
}
