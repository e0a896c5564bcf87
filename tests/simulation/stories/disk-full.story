# The recording can't be saved: the user is told.

given the disk is full

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
2      release               | 2      menu error
                             | 6      menu idle
