# SPDX-License-Identifier: MIT
# Log-mel spectrogram exactly as whisper / whisper.cpp computes it.
import numpy as np, torch
SR, NFFT, HOP, NMEL = 16000, 400, 160, 80

def mel_filters(sr=SR, n_fft=NFFT, n_mels=NMEL):
    """Slaney mel filter bank with Slaney area normalisation (librosa.filters.mel)"""
    f_sp, min_log_hz = 200.0 / 3, 1000.0
    min_log_mel, logstep = min_log_hz / f_sp, np.log(6.4) / 27.0
    to_mel = lambda f: np.where(f < min_log_hz, f / f_sp, min_log_mel + np.log(np.maximum(f, 1e-9) / min_log_hz) / logstep)
    to_hz = lambda m: np.where(m < min_log_mel, m * f_sp, min_log_hz * np.exp(logstep * (m - min_log_mel)))
    fft = np.linspace(0, sr / 2, n_fft // 2 + 1)
    pts = to_hz(np.linspace(to_mel(np.array(0.0)), to_mel(np.array(sr / 2.0)), n_mels + 2))
    d = np.diff(pts); ramps = pts[:, None] - fft[None, :]
    w = np.maximum(0, np.minimum(-ramps[:-2] / d[:-1, None], ramps[2:] / d[1:, None]))
    return (w * (2.0 / (pts[2:] - pts[:-2]))[:, None]).astype(np.float32)      # [80, 201]

FILT = mel_filters()
_W = torch.hann_window(NFFT); _F = torch.from_numpy(FILT)

def mel_power(x):
    """float32 samples -> [n_frames, 80] mel power (before the logarithm), one frame per 10 ms"""
    x = torch.from_numpy(np.ascontiguousarray(x, dtype=np.float32))
    n = len(x) // HOP
    x = torch.nn.functional.pad(x, (NFFT // 2, NFFT))
    s = torch.stft(x, NFFT, HOP, window=_W, center=False, return_complex=True)
    return ((s.abs() ** 2).T @ _F.T)[:n]                                        # [n, 80]

def finish(p):
    """mel power [T, 80] -> whisper's normalised log mel"""
    l = torch.log10(torch.clamp(p, min=1e-10))
    l = torch.maximum(l, l.max() - 8.0)
    return (l + 4.0) / 4.0
