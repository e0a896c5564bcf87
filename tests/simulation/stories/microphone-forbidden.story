# Without the microphone a press shows a card that says so, and doesn't record. When the user has seen to it, it does.

given the microphone is forbidden

                                 | 0      hud permissionRequired microphone
1      press                     | 1      hud permissionRequired microphone
1.5    release                   |
5      click the card's button   | 5      openSettings microphone
                                 | 5.18   hud hidden
10     the microphone is allowed |
20     press                     |
                                 | 20.6   recorderStart
                                 | 20.6   menu recording
                                 | 20.6   hud listening
                                 | 20.6   sound Submarine
22     release                   | 22     recorderStop 2.0
                                 | 22     menu transcribing
                                 | 22     hud transcribing
                                 | 22     recognise transcribe auto null 2.0
                                 | 23     statistics 2.0 2 11 auto false false none
                                 | 23     menu idle
                                 | 23     type hello world
                                 | 23.18  hud hidden
