# SPDX-License-Identifier: MIT
# Synthesises the pool of single utterances with libespeak-ng: gen_pool.py NAME SEED N_EN N_DE N_RU
import ctypes, sys, random, pickle, time, numpy as np, torch
import grammar as G, melspec as M
torch.set_num_threads(1)
lib = ctypes.CDLL("libespeak-ng.so.1")
CB = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.POINTER(ctypes.c_short), ctypes.c_int, ctypes.c_void_p)
buf = []
def _cb(w, n, ev):
    if n > 0 and w: buf.append(np.ctypeslib.as_array(w, (n,)).copy())
    return 0
cb = CB(_cb)
RATE = lib.espeak_Initialize(2, 0, None, 0)
lib.espeak_SetSynthCallback(cb)
lib.espeak_TextToPhonemes.restype = ctypes.c_char_p

def set_voice(voice, speed, pitch, rng):
    if lib.espeak_SetVoiceByName(voice.encode()) != 0: raise ValueError(voice)
    for p, v in ((1, speed), (2, 100), (3, pitch), (4, rng)): lib.espeak_SetParameter(p, v, 0)

def synth(text):
    buf.clear()
    b = text.encode() + b"\0"
    lib.espeak_Synth(b, len(b), 0, 1, 0, 1, None, None); lib.espeak_Synchronize()
    x = np.concatenate(buf).astype(np.float32) / 32768 if buf else np.zeros(0, np.float32)
    return resample(x)

def resample(x):
    """22050 -> 16000 by FFT"""
    if RATE == 16000: return x
    n = (len(x) + 440) // 441 * 441 + 882
    x = np.pad(x, (441, n - len(x)))
    X = np.fft.rfft(x); m = len(x) * 320 // 441
    return (np.fft.irfft(X[: m // 2 + 1], m) * (m / len(x))).astype(np.float32)

def phonemes(text):
    p = ctypes.c_char_p(text.encode()); pp = ctypes.c_void_p(ctypes.cast(p, ctypes.c_void_p).value); out = []
    while pp.value:
        s = lib.espeak_TextToPhonemes(ctypes.byref(pp), 1, 2)
        if s: out.append(s.decode("utf8", "replace"))
        else: break
    return " ".join(out)

def trim(x):
    a = np.abs(x); k = np.nonzero(a > 0.004)[0]
    if not len(k): return None
    return x[max(0, k[0] - 400): min(len(x), k[-1] + 640)]

EN_BASE = ["en-us"] * 6 + ["en"] * 6 + ["en-gb-x-rp", "en-gb-scotland", "en-gb-x-gbclan", "en-us-nyc"]   # "en" is en-gb
VAR = ["", ""] + ["m%d" % i for i in range(1, 9)] + ["f%d" % i for i in range(1, 6)]
VAR_X = ["Alex", "Andy", "adam", "david", "edward", "john", "linda", "steph", "zac", "max", "paul", "klatt", "klatt2", "Lee", "Gene", "antonio", "rob"]
def voice(r, lang):
    base = r.choice(EN_BASE) if lang == "en" else lang
    v = r.choice(VAR) if r.random() < 0.8 else r.choice(VAR_X)
    return base + ("+" + v if v else "")

def main():
    name, seed, n_en, n_de, n_ru = sys.argv[1], *map(int, sys.argv[2:])
    r = random.Random(seed); fr = []; idx = []; off = 0; t0 = time.time(); sec = 0
    jobs = []
    while len(jobs) < n_en:
        s = G.random_words(r) if r.random() < 0.12 else G.en_sentence(r)
        if not G.held_out(s): jobs.append(("en", s, s))
    for l, S, n in (("de", G.DE, n_de), ("ru", G.RU, n_ru)):
        for i in range(n): jobs.append((l, *S[i % len(S)]))
    r.shuffle(jobs)
    for i, (l, s, en) in enumerate(jobs):
        v = voice(r, l); sp, pi, rg = r.randint(120, 200), r.randint(20, 80), r.randint(30, 70)
        try:
            set_voice(v, sp, pi, rg); x = trim(synth(s)); ph = phonemes(s)
        except Exception as e: print("!", v, e); continue
        if x is None: print("empty", v, s); continue
        p = torch.log10(torch.clamp(M.mel_power(x), min=1e-10)).to(torch.float16).numpy()
        fr.append(p); idx.append(dict(lang=l, text=s, en=en, voice=v, ph=ph, off=off, n=len(p))); off += len(p); sec += len(x) / 16000
        if i % 1000 == 0: print(i, len(jobs), "%.0f s audio, %.0f s wall" % (sec, time.time() - t0), v, s, ph, flush=True)
    np.save(name + ".npy", np.concatenate(fr)); pickle.dump(idx, open(name + ".pkl", "wb"))
    print(name, len(idx), "utterances", sec, "s audio", time.time() - t0, "s wall")
if __name__ == "__main__": main()
