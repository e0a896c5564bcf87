# The microphone dies in the middle: the user is told at once, and what was said before is typed.

0      press                                       |
                                                   | 0.6    recorderStart
                                                   | 0.6    menu recording
                                                   | 0.6    hud listening
                                                   | 0.6    sound Submarine
1.5    the microphone dies when it has heard 0.9 s | 1.5    hud notice The microphone is gone. What you said before is kept. warn 6.0
3      release                                     | 3      recorderStop 0.9
                                                   | 3      menu transcribing
                                                   | 3      hud transcribing
                                                   | 3      recognise transcribe auto null 0.9
                                                   | 4      statistics 0.9 2 11 auto false false none
                                                   | 4      menu idle
                                                   | 4      type hello world
                                                   | 4.18   hud hidden
