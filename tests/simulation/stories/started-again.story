# A second start opens the panel, also in the middle of a dictation; the window gets its text when it is in front again.

0      press                        |
                                    | 0.6    recorderStart
                                    | 0.6    menu recording
                                    | 0.6    hud listening
                                    | 0.6    sound Submarine
1      the program is started again |
2      release                      | 2      recorderStop 2.0
                                    | 2      menu transcribing
                                    | 2      hud transcribing
                                    | 2      recognise transcribe auto null 2.0
                                    | 3      statistics 2.0 2 11 auto false false none
                                    | 3      activate 100
                                    | 3.15   hud notice Pasted in Editor info 3.0
                                    | 3.15   menu idle
                                    | 3.15   type hello world
                                    | 6.33   hud hidden
