# Speech in German, text in English: the recogniser translates as it listens.

given set sourceLanguageCode to "de"
given set targetLanguageCode to "en"
given first it hears "good morning"

0      press                 |
                             | 0.6    recorderStart
                             | 0.6    menu recording
                             | 0.6    hud listening
                             | 0.6    sound Submarine
2      release               | 2      recorderStop 2.0
                             | 2      menu transcribing
                             | 2      hud transcribing
                             | 2      recognise translateToEnglish de Speech translated into English with full punctuation, commas, periods, question marks, and proper capitalization. 2.0
                             | 3      statistics 2.0 2 12 de true false none
                             | 3      menu idle
                             | 3      type good morning
                             | 3.18   hud hidden
