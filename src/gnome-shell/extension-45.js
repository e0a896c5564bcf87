// SPDX-License-Identifier: MIT
// GNOME 45 and later; shell-service.js follows.
import Clutter from 'gi://Clutter';
import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import GObject from 'gi://GObject';
import Meta from 'gi://Meta';
import Shell from 'gi://Shell';
import * as Main from 'resource:///org/gnome/shell/ui/main.js';
import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';

export default class TalveraExtension extends Extension {
    enable() {
        const [, bytes] = GLib.file_get_contents(`${this.path}/${INTERFACE}.xml`);
        this._service = new ShellService(new TextDecoder().decode(bytes));
    }

    disable() {
        this._service.end();
        this._service = null;
    }
}
