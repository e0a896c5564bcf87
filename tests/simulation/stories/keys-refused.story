# No key can be typed: the text is on the clipboard, and the user is told.

given no key can be typed

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
                             | 3.18   hud hidden
                             | 3.27   clipboard hello world
                             | 3.27   hud notice Couldn't insert the text — it is on the clipboard. Press ⌘V to paste. warn 6.0
                             | 9.45   hud hidden
                             | 62     in no window
