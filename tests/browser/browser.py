"""A headless browser, driven over a pipe with the messages of its developer tools."""
import base64
import json
import os
import select
import shutil
import subprocess
import tempfile
import time

PROGRAMS = ('chromium-headless-shell', 'chromium')


def program():
    """The browser that is installed; None without one."""
    return next(filter(None, map(shutil.which, PROGRAMS)), None)


class Browser:
    """One page of one browser. Notes what the page writes to its console and what it requests."""

    def __init__(self):
        self.profile = tempfile.TemporaryDirectory()
        to_browser, self.out = os.pipe()
        self.back, from_browser = os.pipe()
        # The browser reads from descriptor 3 and writes to 4. Without a sandbox, since root has none.
        script = f'exec "$@" 3<&{to_browser} 4>&{from_browser}'
        self.process = subprocess.Popen(
            ['bash', '-c', script, 'browser', program(), '--headless', '--no-sandbox',
             '--disable-gpu', '--hide-scrollbars', '--remote-debugging-pipe',
             f'--user-data-dir={self.profile.name}', 'about:blank'],
            pass_fds=(to_browser, from_browser), stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self.number = 0
        self.text = b''
        self.session = None
        self.complaints = []
        self.requests = []
        self.loaded = False
        target = self.call('Target.createTarget', url='about:blank')['targetId']
        self.session = self.call('Target.attachToTarget', targetId=target, flatten=True)['sessionId']
        for domain in 'Page', 'Runtime', 'Log', 'Network':
            self.call(domain + '.enable')

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        self.profile.cleanup()

    def receive(self, deadline):
        while b'\0' not in self.text:
            ready, _, _ = select.select([self.back], [], [], max(deadline - time.monotonic(), 0))
            piece = os.read(self.back, 1 << 20) if ready else b''
            if not piece:
                raise RuntimeError('the browser does not answer')
            self.text += piece
        message, self.text = self.text.split(b'\0', 1)
        return json.loads(message)

    def take(self, message):
        method, told = message.get('method'), message.get('params', {})
        if method == 'Runtime.exceptionThrown':
            self.complaints.append(json.dumps(told['exceptionDetails'])[:500])
        elif method == 'Runtime.consoleAPICalled' and told['type'] in ('error', 'warning'):
            self.complaints.append(json.dumps(told['args'])[:500])
        elif method == 'Log.entryAdded' and told['entry']['level'] in ('error', 'warning'):
            self.complaints.append(told['entry']['text'])
        elif method == 'Network.requestWillBeSent':
            self.requests.append(told['request']['url'])
        elif method == 'Page.loadEventFired':
            self.loaded = True

    def call(self, method, **params):
        self.number += 1
        request = {'id': self.number, 'method': method, 'params': params}
        if self.session:
            request['sessionId'] = self.session
        os.write(self.out, json.dumps(request).encode() + b'\0')
        deadline = time.monotonic() + 60
        while True:
            message = self.receive(deadline)
            if message.get('id') != self.number:
                self.take(message)
            elif 'error' in message:
                raise RuntimeError(f'{method}: {message["error"]}')
            else:
                return message['result']

    def open(self, url):
        """Opens an address anew and waits until it is loaded."""
        for address in 'about:blank', url:  # the same page with another "#..." would not load again
            self.loaded = False
            self.call('Page.navigate', url=address)
            deadline = time.monotonic() + 60
            while not self.loaded:
                self.take(self.receive(deadline))

    def run(self, script):
        """The value of an expression, or of what it promises."""
        result = self.call('Runtime.evaluate', expression=script, returnByValue=True,
                           awaitPromise=True)
        if 'exceptionDetails' in result:
            raise RuntimeError(f'{script}: {result["exceptionDetails"]}')
        return result['result'].get('value')

    def size(self, width, height, scale=1):
        self.call('Emulation.setDeviceMetricsOverride', width=width, height=height,
                  deviceScaleFactor=scale, mobile=width < 600)

    def scripts(self, allowed):
        self.call('Emulation.setScriptExecutionDisabled', value=not allowed)

    def screenshot(self, file, whole=False):
        """A picture of the window, or of the whole page."""
        picture = self.call('Page.captureScreenshot', format='png', captureBeyondViewport=whole)
        with open(file, 'wb') as out:
            out.write(base64.b64decode(picture['data']))

    def pdf(self, file):
        with open(file, 'wb') as out:
            out.write(base64.b64decode(self.call('Page.printToPDF', preferCSSPageSize=True)['data']))
