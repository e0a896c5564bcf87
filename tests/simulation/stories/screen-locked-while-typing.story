# A locker comes up while the text is typed: its password field gets nothing of it.

0      press                  |
                              | 0.6    recorderStart
                              | 0.6    menu recording
                              | 0.6    hud listening
                              | 0.6    sound Submarine
2      release                | 2      recorderStop 2.0
                              | 2      menu transcribing
                              | 2      hud transcribing
                              | 2      recognise transcribe auto null 2.0
                              | 3      statistics 2.0 2 11 auto false false none
                              | 3      menu idle
                              | 3      type hello world
3.14   the screen is locked   |
                              | 3.162  clipboard hello world
                              | 3.18   hud hidden
                              | 3.18   hud notice Focus changed — the whole text is on the clipboard. Press ⌘V to paste. warn 6.0
                              | 9.36   hud hidden
20     the screen is unlocked |
                              | 80     in the window Editor: hello w
