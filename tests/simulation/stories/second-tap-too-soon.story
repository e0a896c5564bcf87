# Tap mode: a second press right after the first takes the recording back.

given set hotkeyTapToToggle to true

0      press                 | 0      recorderStart
                             | 0      menu recording
                             | 0      hud listening
                             | 0      sound Submarine
0.05   release               |
0.15   press                 | 0.15   recorderStop 2.0
                             | 0.15   menu idle
0.2    release               |
