# The recorder can't start: the user is told at once.

given the microphone is broken

0      press                 |
                             | 0.6    menu error
                             | 0.6    hud notice Microphone unavailable warn 3.0
2      release               |
                             | 3.78   hud hidden
                             | 4.6    menu idle
