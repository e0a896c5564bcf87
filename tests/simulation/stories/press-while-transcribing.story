# A press while the last recording is being recognised is ignored, and so is its release.

given first it hears "one moment" within 3 s

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
2      release               | 2      recorderStop 2.0
                             | 2      menu transcribing
                             | 2      hud transcribing
                             | 2      recognise transcribe auto null 2.0
2.5    press                 |
4      release               |
                             | 5      statistics 2.0 2 10 auto false false none
                             | 5      menu idle
                             | 5      type one moment
                             | 5.18   hud hidden
