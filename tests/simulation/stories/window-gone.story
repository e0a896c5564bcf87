# The window that was dictated into is gone when the text is ready: it is kept on the clipboard, and the user is told.

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
2      release               | 2      recorderStop 2.0
                             | 2      menu transcribing
                             | 2      hud transcribing
                             | 2      recognise transcribe auto null 2.0
2.5    the editor quits      |
                             | 3      statistics 2.0 2 11 auto false false none
                             | 3      hud notice Editor closed — text copied to clipboard. Press ⌘V to paste. warn 6.0
                             | 3      menu idle
                             | 3      clipboard hello world
                             | 9.18   hud hidden
