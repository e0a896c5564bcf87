# The model is taken away: a press opens the wizard instead of recording.

1      the model is missing  |
2      press                 | 2      onboardingWindow
4      release               |
