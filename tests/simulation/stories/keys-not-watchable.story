# A desktop that doesn't let us watch keys: the card says so, and a click takes it away.

given the desktop doesn't let us watch keys

                             | 0      hud permissionRequired accessibility
5      click the card away   |
                             | 5.18   hud hidden
6      press                 | 6      hud permissionRequired accessibility
6.5    release               |
