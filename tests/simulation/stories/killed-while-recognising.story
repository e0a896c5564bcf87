# The agent is killed while it recognises, and started again: nothing is left of the recording, and the next one works.

0      press                                   |
                                               | 0.6    recorderStart
                                               | 0.6    menu recording
                                               | 0.6    hud listening
                                               | 0.6    sound Submarine
2      release                                 | 2      recorderStop 2.0
                                               | 2      menu transcribing
                                               | 2      hud transcribing
                                               | 2      recognise transcribe auto null 2.0
2.5    the program is killed and started again |
10     press                                   |
                                               | 10.6   recorderStart
                                               | 10.6   menu recording
                                               | 10.6   hud listening
                                               | 10.6   sound Submarine
12     release                                 | 12     recorderStop 2.0
                                               | 12     menu transcribing
                                               | 12     hud transcribing
                                               | 12     recognise transcribe auto null 2.0
                                               | 13     statistics 2.0 2 11 auto false false none
                                               | 13     menu idle
                                               | 13     type hello world
                                               | 13.18  hud hidden
