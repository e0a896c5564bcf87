# Tap mode: one press begins, releases mean nothing, the next press ends it.

given set hotkeyTapToToggle to true

0      press                 | 0      recorderStart
                             | 0      menu recording
                             | 0      hud listening
                             | 0      sound Submarine
0.1    release               |
2      press                 | 2      recorderStop 2.0
                             | 2      menu transcribing
                             | 2      hud transcribing
                             | 2      recognise transcribe auto null 2.0
2.1    release               |
                             | 3      statistics 2.0 2 11 auto false false none
                             | 3      menu idle
                             | 3      type hello world
                             | 3.18   hud hidden
