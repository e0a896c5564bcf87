# The recogniser fails: the user is told, nothing is typed, and the next dictation works.

given first it fails
given then it hears "better now"

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
2      release               | 2      recorderStop 2.0
                             | 2      menu transcribing
                             | 2      hud transcribing
                             | 2      recognise transcribe auto null 2.0
                             | 3      menu error
                             | 3      hud notice Transcription failed warn 3.0
                             | 6.18   hud hidden
                             | 7      menu idle
10     press                 |
                             | 10.6   recorderStart
                             | 10.6   menu recording
                             | 10.6   hud listening
                             | 10.6   sound Submarine
12     release               | 12     recorderStop 2.0
                             | 12     menu transcribing
                             | 12     hud transcribing
                             | 12     recognise transcribe auto null 2.0
                             | 13     statistics 2.0 2 10 auto false false none
                             | 13     menu idle
                             | 13     type better now
                             | 13.18  hud hidden
