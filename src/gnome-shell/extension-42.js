// SPDX-License-Identifier: MIT
// GNOME 42 to 44; shell-service.js follows.
const {Clutter, Gio, GLib, GObject, Meta, Shell} = imports.gi;
const ByteArray = imports.byteArray;
const Main = imports.ui.main;

class TalveraExtension {
    constructor(directory) {
        this._directory = directory;
    }

    enable() {
        const [, bytes] = GLib.file_get_contents(`${this._directory}/${INTERFACE}.xml`);
        this._service = new ShellService(ByteArray.toString(bytes));
    }

    disable() {
        this._service.end();
        this._service = null;
    }
}

function init(metadata) {
    return new TalveraExtension(metadata.path);
}
