# SPDX-License-Identifier: MIT
# The real llama-server with a model, over a socket in a directory of its own, asked as the program asks it.
import http.client, json, os, socket, subprocess, tempfile, time

class Connection(http.client.HTTPConnection):
    def __init__(s, path): super().__init__("localhost", timeout=60); s.path = path
    def connect(s): s.sock = socket.socket(socket.AF_UNIX); s.sock.settimeout(60); s.sock.connect(s.path)   # known before it connects, for close()

class Server:
    def __init__(s, program, model, context=1024):
        s.directory = tempfile.TemporaryDirectory(); s.path = s.directory.name + "/llama.sock"; s.log = open(s.directory.name + "/log", "w")
        s.process = subprocess.Popen([program, "-m", model, "--host", s.path, "-c", str(context), "-np", "1", "--cache-ram", "0", "--reasoning", "off",
                                      "--offline", "--no-ui", "--no-slots", "-t", "1"], stdout=s.log, stderr=s.log)
        end = time.monotonic() + 60
        while time.monotonic() < end:
            if s.process.poll() is not None: raise SystemExit(open(s.log.name).read()[-3000:])
            try:
                if s.call("GET", "/health")[0] == 200: return
            except OSError: pass
            time.sleep(.05)
        s.stop(); raise SystemExit("the server doesn't answer")
    def __enter__(s): return s
    def __exit__(s, *_): s.stop()
    def stop(s): s.process.terminate(); s.process.wait(); s.log.close(); s.directory.cleanup()
    def call(s, method, path, body=None):
        c = Connection(s.path)
        try: c.request(method, path, None if body is None else json.dumps(body), {"Content-Type": "application/json"}); r = c.getresponse(); return r.status, r.read()
        finally: c.close()
    def tokens(s, text): return json.loads(s.call("POST", "/tokenize", {"content": text, "parse_special": True})[1])["tokens"]
    def template(s, instructions, prompt): return json.loads(s.call("POST", "/apply-template", {"messages": messages(instructions, prompt)})[1])["prompt"]
    def ask(s, instructions, prompt, **more):
        """(answer, why it ended)"""
        status, t = s.call("POST", "/v1/chat/completions", {"messages": messages(instructions, prompt), "stream": True, "seed": 1, **more})
        if status != 200: return t.decode(), status
        out, why = "", None
        for line in t.decode().split("\n"):
            if line.startswith("data: {"):
                c = json.loads(line[6:])["choices"][0]; out += c["delta"].get("content") or ""; why = c.get("finish_reason") or why
        return out, why

def messages(instructions, prompt): return [{"role": "system", "content": instructions}, {"role": "user", "content": prompt}]
