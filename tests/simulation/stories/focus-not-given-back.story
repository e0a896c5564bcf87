# The other window can't be brought back: the text is kept on the clipboard, and the user is told.

given no application can be brought to the front

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
2      release               | 2      recorderStop 2.0
                             | 2      menu transcribing
                             | 2      hud transcribing
                             | 2      recognise transcribe auto null 2.0
2.5    focus on the mail     |
                             | 3      statistics 2.0 2 11 auto false false none
                             | 3      activate 100
                             | 3      hud notice Couldn't switch back to Editor — text copied to clipboard. Press ⌘V to paste. warn 6.0
                             | 3      menu idle
                             | 3      clipboard hello world
                             | 9.18   hud hidden
