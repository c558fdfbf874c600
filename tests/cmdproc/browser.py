"""Headless Chromium without a network, driven over the DevTools pipe: the test's eyes on the reference page."""

import json
import os
import shutil
import subprocess
import tempfile


class Browser:
    def __init__(self, width=1400, height=1000):
        self.profile = tempfile.mkdtemp(prefix="reference-page-")
        command_out, command_in = os.pipe()
        answer_out, answer_in = os.pipe()
        # The browser reads commands from descriptor 3 and writes answers to 4.
        script = f'exec chromium "$@" 3<&{command_out} 4>&{answer_in}'
        self.process = subprocess.Popen(
            ["bash", "-c", script, "chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
             "--no-first-run", "--disable-background-networking", "--host-resolver-rules=MAP * ~NOTFOUND",
             f"--user-data-dir={self.profile}", f"--window-size={width},{height}", "--remote-debugging-pipe", "about:blank"],
            pass_fds=(command_out, answer_in), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(command_out)
        os.close(answer_in)
        self.commands = os.fdopen(command_in, "wb", buffering=0)
        self.answers = os.fdopen(answer_out, "rb")
        self.last_id = 0
        self.session = None
        self.requests = []  # addresses that the page asked for
        self.errors = []  # exceptions and complaints of the page's scripts
        target = next(each for each in self.call("Target.getTargets")["targetInfos"] if each["type"] == "page")
        self.session = self.call("Target.attachToTarget", targetId=target["targetId"], flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Network", "Log"):
            self.call(domain + ".enable")
        self.call("Network.emulateNetworkConditions", offline=True, latency=0, downloadThroughput=0, uploadThroughput=0)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.session = None
            self.call("Browser.close")
            self.process.wait(timeout=10)
        except (OSError, EOFError, subprocess.TimeoutExpired):
            self.process.kill()
            self.process.wait()
        shutil.rmtree(self.profile, ignore_errors=True)

    def _next(self):
        message = bytearray()
        while (byte := self.answers.read(1)) != b"\0":
            if not byte:
                raise EOFError("the browser is gone")
            message += byte
        answer = json.loads(message)
        method, params = answer.get("method"), answer.get("params", {})
        if method == "Network.requestWillBeSent":
            self.requests.append(params["request"]["url"])
        elif method == "Runtime.exceptionThrown":
            details = params["exceptionDetails"]
            self.errors.append(details.get("exception", {}).get("description", details["text"]))
        elif method == "Log.entryAdded" and params["entry"]["level"] == "error":
            self.errors.append(params["entry"]["text"])
        return answer

    def call(self, method, **params):
        self.last_id += 1
        message = {"id": self.last_id, "method": method, "params": params}
        if self.session:
            message["sessionId"] = self.session
        self.commands.write(json.dumps(message).encode() + b"\0")
        while True:
            answer = self._next()
            if answer.get("id") == self.last_id:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']['message']}")
                return answer["result"]

    def open(self, address):
        self.call("Page.navigate", url="about:blank")  # the same page with another fragment is loaded anew
        self.call("Page.navigate", url=address)
        self.run("new Promise(done => document.readyState === 'complete' ? done() : addEventListener('load', done))")

    def run(self, script):
        """The value of a JavaScript expression, once it is there."""
        answer = self.call("Runtime.evaluate", expression=script, awaitPromise=True, returnByValue=True)
        if "exceptionDetails" in answer:
            details = answer["exceptionDetails"]
            raise RuntimeError(details.get("exception", {}).get("description", details["text"]))
        return answer["result"].get("value")
