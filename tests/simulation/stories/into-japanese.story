# Another language than English needs a language model that this machine hasn't got: English, and the user is told why.

given set targetLanguageCode to "ja"
given first it hears "guten Morgen"
given then it hears "good morning"

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
2      release               | 2      recorderStop 2.0
                             | 2      menu transcribing
                             | 2      hud transcribing
                             | 2      recognise transcribe auto null 2.0
                             | 3      statistics 2.0 2 12 auto true false none
                             | 3      hud transcribing
                             | 3      recognise translateToEnglish auto Speech translated into English with full punctuation, commas, periods, question marks, and proper capitalization. 2.0
                             | 4      hud notice Whisper translation — Apple Intelligence unavailable info 3.0
                             | 4      menu idle
                             | 4      type good morning
                             | 7.18   hud hidden
