// SPDX-License-Identifier: MIT
import QtQuick
import Talvera

/// A sentence with a key in it.
Flow {
    id: sentence

    property string before
    property string key
    property string after

    /// What stays together in a line, each with the space behind it: words, and in Chinese and Japanese a character with
    /// what no line begins with.
    function pieces(text) {
        return text.match(/[\u3040-\u30ff\u4e00-\u9fff][\u3001\u3002\uff0c\u300d\u30fc\u3063\u3083\u3085\u3087]* ?|[^ \u3040-\u30ff\u4e00-\u9fff]+ ?/g) ?? []
    }

    component Piece: Label {
        required property string modelData

        height: 24
        rightPadding: modelData.endsWith(" ") ? Theme.spacingTiny : 0
        text: modelData.trim()
        color: Theme.textSecondary
        font.pixelSize: Theme.sizeTitle
        verticalAlignment: Text.AlignVCenter
    }

    Accessible.role: Accessible.StaticText
    Accessible.name: before + key + after

    Repeater {
        model: sentence.pieces(sentence.before)
        delegate: Piece {}
    }
    Item {
        width: cap.width + (sentence.after.startsWith(" ") ? Theme.spacingTiny : 0)
        height: 24

        KbdCap {
            id: cap
            text: sentence.key
            height: 24
        }
    }
    Repeater {
        model: sentence.pieces(sentence.after)
        delegate: Piece {}
    }
}
