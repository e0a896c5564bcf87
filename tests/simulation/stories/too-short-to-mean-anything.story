# A press that lets the recorder start and no more: what it has heard is thrown away.

given the user speaks for 0.1 s

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
0.7    release               | 0.7    recorderStop 0.1
                             | 0.7    menu idle
