
const INTERFACE = 'arpa.home.talvera.Shell1';
const BUS_NAME = 'arpa.home.talvera.Shell';
const PATH = '/arpa/home/talvera/Shell';

const Result = {DONE: 0, WITHOUT_FOCUS: 1, TAKES_NO_TEXT: 2};

const LEFT_SHIFT = 42;
const INSERT = 110;

const MODIFIERS = [
    {
        mask: Clutter.ModifierType.CONTROL_MASK, names: /^(control|ctrl|ctl|primary)$/i,
        keys: /^(Control_[LR]|0x25|0x69)$/i,
    },
    {
        mask: Clutter.ModifierType.MOD1_MASK, names: /^(alt|mod1)$/i,
        keys: /^(Alt_[LR]|0x40|0x6c)$/i,
    },
    {
        mask: Clutter.ModifierType.SHIFT_MASK, names: /^(shift|shft)$/i,
        keys: /^(Shift_[LR]|0x32|0x3e)$/i,
    },
    {
        mask: Clutter.ModifierType.MOD4_MASK, names: /^(super|mod4)$/i,
        keys: /^(Super_[LR]|0x85|0x86)$/i,
    },
];

// All keyboards of a session share their modifiers, and what the user holds can't be let go for them.
const SPOILS_PASTE = Clutter.ModifierType.CONTROL_MASK | Clutter.ModifierType.MOD1_MASK | Clutter.ModifierType.MOD4_MASK;

// Those that make another chord of a key alone, which locks don't.
const JOINS_A_KEY = MODIFIERS.reduce((mask, modifier) => mask | modifier.mask, Clutter.ModifierType.MOD5_MASK);

// Only while a chord is down. It is well below what anybody notices.
const POLL_MS = 10;

// Newer Shells tell that a grabbed key has gone up. They miss it where a modifier comes or goes first, older ones always do.
const TELLS_RELEASE = GObject.signal_lookup('accelerator-deactivated', Meta.Display.$gtype) !== 0;

function modifiersOf(accelerator) {
    const names = [...accelerator.matchAll(/<([^>]*)>/g)].map(match => match[1]);
    const key = accelerator.replace(/<[^>]*>/g, '');
    return MODIFIERS.filter(modifier => names.some(name => modifier.names.test(name)) || modifier.keys.test(key))
        .reduce((mask, modifier) => mask | modifier.mask, 0);
}

function modifiersDown() {
    return global.get_pointer()[2];
}

// Nothing else would end the press then: a chord ends with its modifiers at the latest, a key alone has none.
function spoilsEnd(down, modifiers) {
    return modifiers ? (down & modifiers) !== modifiers : (down & JOINS_A_KEY) !== 0;
}

function applicationOf(window) {
    const id = Shell.WindowTracker.get_default().get_window_app(window)?.get_id() ?? '';
    return id.endsWith('.desktop') ? id.slice(0, -'.desktop'.length) : window.get_wm_class() ?? '';
}

// What has the keyboard: no window does while the Shell itself takes the keys.
function focusedWindow() {
    if (Main.actionMode !== Shell.ActionMode.NORMAL)
        return null;
    let window = global.display.focus_window;
    while (window?.is_override_redirect() && window.get_transient_for())
        window = window.get_transient_for();
    return window;
}

function takesText(window) {
    return window?.get_client_type() === Meta.WindowClientType.WAYLAND && Main.inputMethod.currentFocus !== null;
}

function focus() {
    const window = focusedWindow();
    return window ? [window.get_id(), window.get_pid(), applicationOf(window), takesText(window)] : [0, 0, '', false];
}

// All of it lives as long as the extension is switched on, which it isn't while the screen is locked.
class ShellService {
    constructor(xml) {
        this._grabs = new Map(); // action: caller, modifiers
        this._callers = new Map(); // name: watch, whether its paste chord is down
        this._held = new Set(); // actions
        this._poll = 0;
        this._lookLater = 0;
        this._keyboard = null;
        this._told = JSON.stringify(focus());

        this._exported = Gio.DBusExportedObject.wrapJSObject(xml, this);
        this._exported.export(Gio.DBus.session, PATH);
        this._name = Gio.DBus.session.own_name(BUS_NAME, Gio.BusNameOwnerFlags.NONE, null, null);

        this._connections = [];
        const connect = (object, signal, handler) => this._connections.push([object, object.connect(signal, handler)]);
        connect(global.display, 'accelerator-activated', (_, action) => this._pressed(action));
        if (TELLS_RELEASE)
            connect(global.display, 'accelerator-deactivated', (_, action) => this._released(action));
        const look = () => this._lookAtFocusLater();
        connect(global.display, 'notify::focus-window', look);
        connect(global.stage, 'notify::key-focus', look);
        connect(Main.overview, 'showing', look);
        connect(Main.overview, 'hidden', look);
        // There is no signal for a field that comes or goes; with it its cursor moves, or the screen keyboard is sent away.
        connect(Main.inputMethod, 'cursor-location-changed', look);
        connect(Main.inputMethod, 'input-panel-state', look);
    }

    end() {
        for (const [object, connection] of this._connections)
            object.disconnect(connection);
        for (const source of [this._poll, this._lookLater]) {
            if (source)
                GLib.source_remove(source);
        }
        for (const caller of [...this._callers.keys()])
            this._forget(caller);
        this._keyboard = null;
        Gio.DBus.session.unown_name(this._name);
        this._exported.unexport();
    }

    get Version() {
        return 1;
    }

    GrabAsync([accelerator], invocation) {
        invocation.return_value(new GLib.Variant('(u)', [this._grab(accelerator, invocation.get_sender())]));
    }

    UngrabAsync([action], invocation) {
        if (this._grabs.get(action)?.caller === invocation.get_sender())
            this._ungrab(action);
        invocation.return_value(null);
    }

    Windows() {
        const focused = focusedWindow();
        return global.display.get_tab_list(Meta.TabList.NORMAL_ALL, null).map(
            window => [window.get_id(), window.get_pid(), applicationOf(window), window === focused]);
    }

    Focus() {
        return focus();
    }

    Activate(process) {
        const window = global.display.get_tab_list(Meta.TabList.NORMAL_ALL, null).find(each => each.get_pid() === process);
        if (window)
            Main.activateWindow(window);
        return window !== undefined;
    }

    CommitAsync([number, text], invocation) {
        const answer = result => invocation.return_value(new GLib.Variant('(u)', [result]));
        const window = focusedWindow();
        if (!window || number && number !== window.get_id())
            return answer(Result.WITHOUT_FOCUS);
        if (!takesText(window))
            return answer(Result.TAKES_NO_TEXT);
        Main.inputMethod.commit(Main.inputMethod.terminalMode ? text.replace(/\n/g, '\r') : text);
        // The Shell hands it on when it is idle, and a text that came before then would take its place.
        GLib.idle_add(GLib.PRIORITY_LOW, () => {
            answer(Result.DONE);
            return GLib.SOURCE_REMOVE;
        });
    }

    PressPasteAsync([number, isDown], invocation) {
        const window = focusedWindow();
        const caller = this._caller(invocation.get_sender());
        let result = Result.DONE;
        if (!isDown)
            this._releasePaste(caller);
        else if (!window || number && number !== window.get_id())
            result = Result.WITHOUT_FOCUS;
        else if (modifiersDown() & SPOILS_PASTE)
            result = Result.TAKES_NO_TEXT;
        else
            this._pressPaste(caller);
        invocation.return_value(new GLib.Variant('(u)', [result]));
    }

    _grab(accelerator, sender) {
        const modifiers = modifiersOf(accelerator);
        if (!modifiers && !TELLS_RELEASE)
            return 0; // its end would never be known
        const flags = Meta.KeyBindingFlags.IGNORE_AUTOREPEAT |
            (TELLS_RELEASE ? Meta.KeyBindingFlags.TRIGGER_RELEASE : 0);
        const action = global.display.grab_accelerator(accelerator, flags);
        if (action === Meta.KeyBindingAction.NONE)
            return 0;
        Main.wm.allowKeybinding(Meta.external_binding_name_for_action(action), Shell.ActionMode.ALL);
        this._caller(sender);
        this._grabs.set(action, {caller: sender, modifiers});
        return action;
    }

    _ungrab(action) {
        this._released(action);
        this._grabs.delete(action);
        Main.wm.allowKeybinding(Meta.external_binding_name_for_action(action), Shell.ActionMode.NONE);
        global.display.ungrab_accelerator(action);
    }

    _pressed(action) {
        const grab = this._grabs.get(action);
        if (!grab || this._held.has(action))
            return;
        this._held.add(action);
        this._tell(grab.caller, 'Pressed', action);
        if (!this._poll) {
            this._poll = GLib.timeout_add(GLib.PRIORITY_HIGH, POLL_MS, () => {
                const down = modifiersDown();
                for (const held of [...this._held]) {
                    if (spoilsEnd(down, this._grabs.get(held).modifiers))
                        this._released(held);
                }
                if (this._held.size)
                    return GLib.SOURCE_CONTINUE;
                this._poll = 0;
                return GLib.SOURCE_REMOVE;
            });
        }
    }

    _released(action) {
        if (this._held.delete(action))
            this._tell(this._grabs.get(action).caller, 'Released', action);
    }

    _tell(caller, signal, action) {
        Gio.DBus.session.emit_signal(caller, PATH, INTERFACE, signal, new GLib.Variant('(u)', [action]));
    }

    _lookAtFocusLater() {
        // The Shell first tells that something changes, then changes it.
        this._lookLater ||= GLib.idle_add(GLib.PRIORITY_DEFAULT, () => {
            this._lookLater = 0;
            const found = focus();
            const told = JSON.stringify(found);
            if (told !== this._told)
                this._exported.emit_signal('FocusChanged', new GLib.Variant('(tisb)', found));
            this._told = told;
            return GLib.SOURCE_REMOVE;
        });
    }

    // What it has grabbed and pressed ends with the caller.
    _caller(name) {
        if (!this._callers.has(name)) {
            const watch = Gio.DBus.session.watch_name(name, Gio.BusNameWatcherFlags.NONE, null, () => this._forget(name));
            this._callers.set(name, {watch, isPasting: false});
        }
        return this._callers.get(name);
    }

    _forget(name) {
        const caller = this._callers.get(name);
        if (!this._callers.delete(name))
            return;
        for (const [action, grab] of [...this._grabs]) {
            if (grab.caller === name)
                this._ungrab(action);
        }
        this._releasePaste(caller);
        Gio.DBus.session.unwatch_name(caller.watch);
    }

    _key(code, state) {
        this._keyboard ??= Clutter.get_default_backend().get_default_seat()
            .create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
        this._keyboard.notify_key(GLib.get_monotonic_time(), code, state);
    }

    _pressPaste(caller) {
        if (caller.isPasting)
            return;
        caller.isPasting = true;
        this._key(LEFT_SHIFT, Clutter.KeyState.PRESSED);
        this._key(INSERT, Clutter.KeyState.PRESSED);
    }

    _releasePaste(caller) {
        if (!caller.isPasting)
            return;
        caller.isPasting = false;
        this._key(INSERT, Clutter.KeyState.RELEASED);
        this._key(LEFT_SHIFT, Clutter.KeyState.RELEASED);
    }
}
