# Two dictations, the second begun as soon as the first is typed.

given first it hears "the first"
given then it hears "the second"

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
2      release               | 2      recorderStop 2.0
                             | 2      menu transcribing
                             | 2      hud transcribing
                             | 2      recognise transcribe auto null 2.0
                             | 3      statistics 2.0 2 9 auto false false none
                             | 3      menu idle
                             | 3      type the first
3.01   press                 |
                             | 3.18   hud hidden
                             | 3.61   recorderStart
                             | 3.61   menu recording
                             | 3.61   hud listening
                             | 3.61   sound Submarine
5      release               | 5      recorderStop 2.0
                             | 5      menu transcribing
                             | 5      hud transcribing
                             | 5      recognise transcribe auto null 2.0
                             | 6      statistics 2.0 2 10 auto false false none
                             | 6      menu idle
                             | 6      type the second
                             | 6.18   hud hidden
