# A touch of the key that is shorter than the hold delay leaves no trace.

0      press                 |
0.59   release               |
