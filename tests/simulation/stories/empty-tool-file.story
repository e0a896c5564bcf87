# The disk was full when the recogniser wrote its text, so that its file is empty: the words are on its standard output.

given first it hears "good morning" within 1 s, but leaves an empty file
given then it hears "and good night" within 1 s, but leaves a cut file

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
2      release               | 2      recorderStop 2.0
                             | 2      menu transcribing
                             | 2      hud transcribing
                             | 2      recognise transcribe auto null 2.0
                             | 3      statistics 2.0 2 12 auto false false none
                             | 3      menu idle
                             | 3      type good morning
                             | 3.18   hud hidden
10     press                 |
                             | 10.6   recorderStart
                             | 10.6   menu recording
                             | 10.6   hud listening
                             | 10.6   sound Submarine
12     release               | 12     recorderStop 2.0
                             | 12     menu transcribing
                             | 12     hud transcribing
                             | 12     recognise transcribe auto null 2.0
                             | 13     statistics 2.0 3 14 auto false false none
                             | 13     menu idle
                             | 13     type and good night
                             | 13.18  hud hidden
