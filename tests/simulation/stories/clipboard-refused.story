# What should be pasted is typed where the clipboard takes no text.

given the clipboard takes no text
given the user speaks for 20 s
given first it hears "a long story"

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
20.6   release               | 20.6   recorderStop 20.0
                             | 20.6   menu transcribing
                             | 20.6   hud transcribing
                             | 20.6   recognise transcribe auto null 20.0
                             | 21.6   statistics 20.0 3 12 auto false false none
                             | 21.6   menu idle
                             | 21.6   type a long story
                             | 21.78  hud hidden
