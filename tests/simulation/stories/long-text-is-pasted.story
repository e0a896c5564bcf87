# What took longer to say than the threshold of 15 seconds is pasted: that is quicker than typing.

given the user speaks for 20 s
given first it hears "a long story" within 4 s

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
20.6   release               | 20.6   recorderStop 20.0
                             | 20.6   menu transcribing
                             | 20.6   hud transcribing
                             | 20.6   recognise transcribe auto null 20.0
                             | 24.6   statistics 20.0 3 12 auto false false none
                             | 24.6   menu idle
                             | 24.6   paste a long story
                             | 24.78  hud hidden
