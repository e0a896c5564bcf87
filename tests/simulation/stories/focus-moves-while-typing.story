# The user changes windows while the text is typed: not one more letter, and the whole text is on the clipboard.

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
2      release               | 2      recorderStop 2.0
                             | 2      menu transcribing
                             | 2      hud transcribing
                             | 2      recognise transcribe auto null 2.0
                             | 3      statistics 2.0 2 11 auto false false none
                             | 3      menu idle
                             | 3      type hello world
3.14   focus on the mail     |
                             | 3.162  clipboard hello world
                             | 3.18   hud hidden
                             | 3.18   hud notice Focus changed — the whole text is on the clipboard. Press ⌘V to paste. warn 6.0
                             | 9.36   hud hidden
                             | 63.14  in the window Editor: hello w
