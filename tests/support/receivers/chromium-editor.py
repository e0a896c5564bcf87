#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""chromium-editor.py PIPE TITLE PROFILE: a web page with a text field in Chromium that reports what it holds."""
import http.server
import os
import subprocess
import sys
import threading

from report import Report

pipe, title, profile = sys.argv[1:]
report = Report(pipe)

PAGE = """<!doctype html><meta charset="utf-8"><title>%s</title>
<p>A text field:</p><textarea id="field" style="width: 480px; height: 240px" autofocus></textarea>
<script>
  const field = document.getElementById("field");
  let painted = false, ready = false, sent = "", busy = false;
  async function tell(what) { await fetch("/", {method: "POST", body: JSON.stringify(what)}); }
  async function follow() {           // one report at a time, so that none overtakes another
    if (busy) return;
    busy = true;
    if (!ready && painted && document.hasFocus() && document.activeElement === field) {
      ready = true;
      await tell({ready: true});
    }
    while (sent !== field.value) { sent = field.value; await tell({text: sent}); }
    busy = false;
  }
  field.addEventListener("input", follow);
  field.addEventListener("focus", follow);
  field.addEventListener("keydown", event => {    // a page may keep the tab key, as editors in the browser do
    if (event.key === "Tab") { event.preventDefault(); document.execCommand("insertText", false, "\\t"); }
  });
  addEventListener("focus", () => { field.focus(); follow(); });
  field.focus();
  // The browser ignores keys until it has shown the page.
  new PerformanceObserver(() => requestAnimationFrame(() => requestAnimationFrame(() => { painted = true; follow(); })))
    .observe({type: "paint", buffered: true});
</script>""" % title


class Page(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def answer(self, body):
        self.send_response(200)
        self.send_header("Content-Type", "text/html; charset=utf-8")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def do_GET(self):
        self.answer(PAGE.encode())

    def do_POST(self):
        report.pipe.write(self.rfile.read(int(self.headers["Content-Length"])) + b"\n")
        self.answer(b"")

    def log_message(self, *_):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Page)
threading.Thread(target=server.serve_forever, daemon=True).start()
os.makedirs(profile, exist_ok=True)
browser = subprocess.Popen(
    ["chromium", "--app=http://127.0.0.1:%d/" % server.server_port, "--user-data-dir=" + profile,
     "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--no-default-browser-check",
     "--disable-background-networking", "--disable-component-update", "--disable-sync", "--disable-dev-shm-usage",
     "--password-store=basic", "--disable-features=Translate,MediaRouter", "--lang=en", "--window-size=520,340"],
    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
browser.wait()
