#!/usr/bin/env python3
"""A video site on the loopback, for the real yt-dlp: a proxy that terminates TLS, imitates the watch page and the
player call, and serves the captions that these list. The name of a video or a track selects its behaviour.

  site.py FOLDER    makes its certificate and FOLDER/yt-dlp.conf, which directs yt-dlp here; prints "ready"; runs
                    until its standard input ends. Standard output and FOLDER/requests get a line for each request:
                    "list CODE OPEN" or "text CODE LANG OPEN", where OPEN is the number of requests of its kind
                    that are being answered.
"""

import http.server
import json
import os
import ssl
import subprocess
import sys
import threading
import time
import urllib.parse

FOLDER = sys.argv[1]
LOCK = threading.Lock()
LISTED = {}  # how often the page of each video was requested
OPEN = {'list': 0, 'text': 0}
LANGUAGES = {'en': 'English', 'de': 'German', 'fr': 'French'}

# Videos that the site does not play: status, reason, and the text below it.
REFUSED = {
    'private': ('LOGIN_REQUIRED', 'Private video', "Sign in if you've been granted access to this video"),
    'removed': ('ERROR', 'This video has been removed by the uploader', ''),
    'absent': ('ERROR', 'Video unavailable', ''),
    'age': ('LOGIN_REQUIRED', 'Sign in to confirm your age', 'This video may be inappropriate for some users.'),
    'members': ('UNPLAYABLE', "Join this channel to get access to members-only content like this video", ''),
    'country': ('UNPLAYABLE', 'Video unavailable', 'The uploader has not made this video available in your country.'),
    'upcoming': ('LIVE_STREAM_OFFLINE', 'Premieres in 3 hours', ''),
    'bot': ('LOGIN_REQUIRED', 'Sign in to confirm you’re not a bot', ''),
    'limited': ('UNPLAYABLE', "The current session has been rate-limited by the site for up to an hour.", ''),
}
# The languages of tracks that misbehave.
FAULTS = ['html', 'empty', 'e403', 'e404', 'e410', 'e429', 'e500', 'drip', 'stall', 'flood', 'cut', 'expired', 'slow']


def is_status(name):
    """Whether a name stands for an HTTP status: "e404"."""
    return name[:1] == 'e' and name[1:].isdigit()


def tracks_of(code):
    """The tracks of a video: language, name and whether it is automatic."""
    kind = code.rstrip('-')
    if kind == 'silent':
        return []
    if kind == 'faults':
        return [(fault, fault, False) for fault in FAULTS]
    if kind == 'many':
        return [('x%02d' % n, 'Track %02d' % n, False) for n in range(25)]
    if kind == 'auto':
        return [('en', 'English (auto-generated)', True)]
    return [('en', 'English', False), ('de', 'German "formal"', False), ('fr', 'French', True)]


def captions_of(code, port):
    born = LISTED.get(code, 0)
    listed = []
    for language, name, automatic in tracks_of(code):
        expire = int(time.time()) + (300 if code.startswith('soon') else 6 * 3600)
        listed.append({
            'baseUrl': 'http://127.0.0.1:%d/api/timedtext?v=%s&expire=%d&born=%d&signature=%s&lang=%s%s' % (
                port, code, expire, born, 'A' * 80, language, '&kind=asr' if automatic else ''),
            'vssId': ('a.' if automatic else '.') + language, 'name': {'simpleText': name},
            'languageCode': language, 'isTranslatable': True, **({'kind': 'asr'} if automatic else {})})
    names = {**LANGUAGES, **{'q%02d' % n: 'Language %02d' % n for n in range(150)}}
    return {'playerCaptionsTracklistRenderer': {
        'captionTracks': listed,
        'translationLanguages': [{'languageCode': c, 'languageName': {'simpleText': n}} for c, n in names.items()]}}


def player_response(code, port):
    kind = code.rstrip('-')
    status, reason, below = REFUSED.get(kind, ('OK', '', ''))
    playability = {'status': status, 'reason': reason}
    if below:
        playability['errorScreen'] = {'playerErrorMessageRenderer': {
            'reason': {'simpleText': reason}, 'subreason': {'simpleText': below}}}
    answer = {'playabilityStatus': playability, 'videoDetails': {
        'videoId': code, 'title': 'A walk: "%s" / today' % kind, 'lengthSeconds': '61', 'author': 'A', 'channelId': 'UC'}}
    if status == 'OK':
        answer['captions'] = captions_of(code, port)
        answer['streamingData'] = {'expiresInSeconds': '21540', 'formats': [{
            'itag': 18, 'url': 'http://127.0.0.1:%d/videoplayback' % port, 'mimeType': 'video/mp4; codecs="avc1.42001E"',
            'width': 640, 'height': 360, 'qualityLabel': '360p', 'quality': 'medium'}]}
    return answer


def caption_text(fmt, language):
    if fmt == 'srv1':
        return ('<?xml version="1.0" encoding="utf-8" ?><transcript><text start="0.5" dur="1.5">R&amp;amp;D in %s</text>'
                '<text start="2" dur="3">it&amp;#39;s done</text></transcript>' % language)
    return 'WEBVTT\n\n00:00:00.500 --> 00:00:02.000\nin another format\n'


class Site(http.server.BaseHTTPRequestHandler):
    protocol_version = 'HTTP/1.1'

    def log_message(self, *_):
        pass

    def do_CONNECT(self):
        self.send_response(200)
        self.end_headers()
        self.connection = TLS.wrap_socket(self.connection, server_side=True)
        self.rfile, self.wfile = self.connection.makefile('rb'), self.connection.makefile('wb', 0)
        self.close_connection = False

    def handle(self):
        try:
            super().handle()
        except OSError:
            pass  # the client was killed

    def do_GET(self):
        url = urllib.parse.urlsplit(self.path)
        query = dict(urllib.parse.parse_qsl(url.query))
        if url.path == '/watch':
            self.counted('list', query.get('v', ''), self.watch, query.get('v', ''))
        elif url.path == '/api/timedtext':
            self.counted('text', query['v'] + ' ' + query['lang'], self.timed_text, query)
        else:
            self.answer(b'')

    def do_POST(self):
        body = json.loads(self.rfile.read(int(self.headers.get('Content-Length', 0))) or b'{}')
        code = body.get('videoId', '')
        if is_status(code.rstrip('-')):
            return self.answer(b'{}', int(code[1:4]))
        if code.startswith('bare'):
            return self.answer(b'{}', kind='application/json')
        self.answer(json.dumps(player_response(code, self.server.server_port)).encode(), kind='application/json')

    def counted(self, kind, what, answer, *arguments):
        with LOCK:
            OPEN[kind] += 1
            if kind == 'list':
                LISTED[what] = LISTED.get(what, 0) + 1
            line = '%s %s %d\n' % (kind, what, OPEN[kind])
            with open(FOLDER + '/requests', 'a') as log:
                log.write(line)
            os.write(1, line.encode())
        try:
            answer(*arguments)
        finally:
            with LOCK:
                OPEN[kind] -= 1

    def watch(self, code):
        kind = code.rstrip('-')
        if kind in ('stall', 'drip', 'flood'):
            return self.misbehave(kind)
        if is_status(kind):
            return self.answer(b'', int(kind[1:]))
        if kind.startswith('slow'):
            time.sleep(1)
        if kind == 'bare':
            return self.answer(b'<html>nothing is here</html>')
        page = '<html><script>var ytInitialData = {"a": 1}; var ytInitialPlayerResponse = %s;</script></html>' % json.dumps(
            player_response(code, self.server.server_port))
        self.answer(page.encode())

    def timed_text(self, query):
        fault = query['lang']
        if fault == 'expired' and int(query['born']) < 2:
            fault = 'e403'
        if fault in ('stall', 'drip', 'flood', 'cut'):
            self.misbehave(fault)
        elif is_status(fault):
            self.answer(b'', int(fault[1:]))
        elif fault in ('empty', 'html'):
            self.answer(b'' if fault == 'empty' else b'<!DOCTYPE html><html><body>Before you continue</body></html>')
        else:
            if fault == 'slow':
                time.sleep(1)
            self.answer(caption_text(query['fmt'], query['lang']).encode(), kind='text/xml')

    def misbehave(self, fault):
        self.close_connection = True
        self.send_response(200)
        self.send_header('Content-Type', 'text/html')
        if fault == 'cut':
            self.send_header('Content-Length', '10000')
        self.end_headers()
        if fault == 'cut':
            self.wfile.write(b'<?xml version="1.0"')
        while fault == 'flood':
            self.wfile.write(b'a' * 65536)
        while fault == 'drip':
            self.wfile.write(b'a')
            time.sleep(0.2)
        if fault == 'stall':
            self.connection.recv(1)  # until the client leaves

    def answer(self, body, status=200, kind='text/html'):
        self.send_response(status)
        self.send_header('Content-Type', kind + '; charset=utf-8')
        self.send_header('Content-Length', str(len(body)))
        self.end_headers()
        self.wfile.write(body)


class Server(http.server.ThreadingHTTPServer):
    request_queue_size = 100

    def handle_error(self, request, client_address):
        pass  # the client was killed


key, certificate = FOLDER + '/key.pem', FOLDER + '/certificate.pem'
subprocess.run(['openssl', 'req', '-x509', '-newkey', 'ec', '-pkeyopt', 'ec_paramgen_curve:prime256v1', '-nodes', '-days', '2',
                '-subj', '/CN=loopback', '-keyout', key, '-out', certificate], check=True, capture_output=True)
TLS = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
TLS.load_cert_chain(certificate, key)
server = Server(('127.0.0.1', 0), Site)
threading.Thread(target=server.serve_forever, daemon=True).start()
with open(FOLDER + '/yt-dlp.conf', 'w') as config:
    config.write('--proxy http://127.0.0.1:%d\n--no-check-certificates\n' % server.server_port)
os.write(1, b'ready\n')
sys.stdin.buffer.read()
os._exit(0)
