# A list of completions that takes the keyboard is part of its window: the text goes on.

0      press                       |
                                   | 0.6    recorderStart
                                   | 0.6    menu recording
                                   | 0.6    hud listening
                                   | 0.6    sound Submarine
2      release                     | 2      recorderStop 2.0
                                   | 2      menu transcribing
                                   | 2      hud transcribing
                                   | 2      recognise transcribe auto null 2.0
                                   | 3      statistics 2.0 2 11 auto false false none
                                   | 3      menu idle
                                   | 3      type hello world
3.14   a list of completions opens |
                                   | 3.18   hud hidden
