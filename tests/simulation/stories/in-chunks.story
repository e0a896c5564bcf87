# A recording of a minute is recognised in chunks that overlap. Each run is told the end of the text before it, and what
# two chunks both hold stands once in the text.

given the user speaks for 60 s
given first it hears "we begin at the beginning and" within 2 s
given then it hears "the beginning and go on until" within 2 s
given then it hears "go on until we come to the end" within 2 s

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
60.6   release               | 60.6   recorderStop 60.0
                             | 60.6   menu transcribing
                             | 60.6   hud transcribing
                             | 60.6   recognise transcribe auto null 25.0
                             | 62.6   recognise transcribe auto we begin at the beginning and 25.0
                             | 64.6   recognise transcribe auto the beginning and go on until 14.0
                             | 66.6   statistics 60.0 14 60 auto false false none
                             | 66.6   menu idle
                             | 66.6   paste we begin at the beginning and go on until we come to the end
                             | 66.78  hud hidden
