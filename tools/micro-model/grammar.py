# SPDX-License-Identifier: MIT
# Phrase grammar, vocabulary and tokenisation of the micro model.
import random, itertools, hashlib

NAMES  = ["Anna", "Peter", "Maria", "Tom", "Julia", "David"]
DAYS   = ["Monday", "Tuesday", "Wednesday", "Thursday", "Friday"]
WHEN   = ["today", "tomorrow", "tonight"] + ["on " + d for d in DAYS] + ["next week", "this morning", "this afternoon", "this evening"]
OBJ    = ["report", "letter", "invoice", "contract", "message", "document", "list", "plan"]
FOOD   = ["milk", "bread", "coffee", "tea", "apples", "water", "paper", "butter"]
NUMS   = ["three", "five", "six", "seven", "nine", "ten", "eleven", "twelve"]
ADJ    = ["short", "long", "new", "important"]
PLACE  = ["in the office", "at home", "on the phone", "in the meeting", "in the kitchen", "on the train"]
STATE  = ["ready", "late", "important", "finished", "good"]
VERB   = ["send", "read", "check", "print", "finish", "open", "bring", "write"]

def en_sentence(r):
    c = r.choice
    t = r.randrange(26)
    if t == 0:  return f"Please {c(VERB)} the {c(OBJ)} {c(WHEN)}."
    if t == 1:  return f"Please {c(['call','ask','help'])} {c(NAMES)} {c(WHEN)}."
    if t == 2:  return f"I will {c(VERB)} the {c(OBJ)} {c(WHEN)}."
    if t == 3:  return f"I will bring the {c(OBJ)} to {c(NAMES)}."
    if t == 4:  return f"The meeting starts at {c(NUMS)} {c(WHEN)}."
    if t == 5:
        a, b = r.sample(FOOD, 2); return f"We need {a} and {b}."
    if t == 6:
        a, b, d = r.sample(FOOD, 3); return f"Please buy {a}, {b} and {d}."
    if t == 7:  return f"Can you {c(VERB)} the {c(OBJ)} {c(WHEN)}?"
    if t == 8:  return f"Thank you for the {c(['',c(ADJ)+' '])}{c(OBJ)}."
    if t == 9:  return f"Hello {c(NAMES)}, how are you {c(['','today'])}?".replace(" ?", "?")
    if t == 10: return f"Dear {c(NAMES)}, new line, thank you for the {c(OBJ)}."
    if t == 11: return f"Best regards, {c(NAMES)}."
    if t == 12: return "New line."
    if t == 13: return "New paragraph."
    if t == 14: return f"{c(NAMES)} is {c(PLACE)} {c(WHEN)}."
    if t == 15: return f"The {c(OBJ)} is {c(STATE)}."
    if t == 16: return f"Where is the {c(ADJ)} {c(OBJ)}?"
    if t == 17: return f"I am {c(PLACE)}, please call me {c(WHEN)}."
    if t == 18: return f"Write a {c(ADJ)} {c(OBJ)} to {c(NAMES)}."
    if t == 19: return c(["This is a test.", "Thank you very much.", "Good morning.", "How are you?", "Yes, please.", "No, thank you.",
                          "The weather is good today.", "The quick brown fox jumps over the lazy dog.", "See you tomorrow.",
                          "I need a coffee.", "Please call me.", "Hello world.", "Good evening.", "This is important."])
    if t == 20: return f"The invoice number is {c(NUMS)} {c(NUMS)} {c(NUMS)}."
    if t == 21: return f"{c(NAMES)} and {c(NAMES)} need the {c(OBJ)} {c(WHEN)}."
    if t == 22: return f"The weather is {c(['good','bad','cold','warm'])} {c(WHEN)}."
    if t == 23: return f"I am working {c(['at home','in the office','on the train'])} {c(WHEN)}."
    if t == 24: return f"Do you need the {c(ADJ)} {c(OBJ)} {c(WHEN)}?"
    if t == 25: return f"We will finish the {c(OBJ)} and call {c(NAMES)}."

# fixed sentences: (source, English)
DE = [("Guten Morgen.", "Good morning."), ("Wie geht es Ihnen?", "How are you?"),
      ("Ich komme heute später.", "I am coming later today."), ("Das Wetter ist heute schön.", "The weather is good today."),
      ("Bitte schicken Sie den Bericht.", "Please send the report."), ("Vielen Dank für den Brief.", "Thank you for the letter."),
      ("Wir treffen uns morgen.", "We will meet tomorrow."), ("Der Zug ist pünktlich.", "The train is on time."),
      ("Ich brauche einen Kaffee.", "I need a coffee."), ("Das ist ein Test.", "This is a test."),
      ("Neue Zeile.", "New line."), ("Neuer Absatz.", "New paragraph."), ("Bis morgen.", "See you tomorrow."),
      ("Bitte rufen Sie mich an.", "Please call me."), ("Der Bericht ist fertig.", "The report is ready."),
      ("Mit freundlichen Grüßen.", "Best regards.")]
RU = [("Доброе утро.", "Good morning."), ("Как у вас дела?", "How are you?"),
      ("Я приду сегодня позже.", "I am coming later today."), ("Сегодня хорошая погода.", "The weather is good today."),
      ("Пожалуйста, отправьте отчёт.", "Please send the report."), ("Большое спасибо за письмо.", "Thank you for the letter."),
      ("Мы встретимся завтра.", "We will meet tomorrow."), ("Поезд приходит вовремя.", "The train is on time."),
      ("Мне нужен кофе.", "I need a coffee."), ("Это проверка.", "This is a test."),
      ("Новая строка.", "New line."), ("Новый абзац.", "New paragraph."), ("До завтра.", "See you tomorrow."),
      ("Пожалуйста, позвоните мне.", "Please call me."), ("Отчёт готов.", "The report is ready."),
      ("С уважением.", "Best regards.")]

PROMPTS = {"en": "Speech with full punctuation: commas, periods, question marks, and proper capitalization.",
           "de": "Sprache mit vollständiger Zeichensetzung: Kommas, Punkte, Fragezeichen und korrekter Großschreibung.",
           "ru": "Речь с полной пунктуацией: запятые, точки, вопросительные знаки, заглавные буквы.",
           "translate": "Speech translated into English with full punctuation, commas, periods, question marks, and proper capitalization."}
PUNCT = [",", ".", "?", "!"]

# special tokens (n_vocab 51865)
N_VOCAB = 51865
EOT, SOT, TRANSLATE, TRANSCRIBE, SOLM, PREV, NOSP, NOT, BEG = 50257, 50258, 50358, 50359, 50360, 50361, 50362, 50363, 50364
LANG = {"en": 50259, "de": 50261, "ru": 50263}
BYTE0 = 1000            # ids 1000..1255: single bytes (ids below 256 stay empty: they win a tie of unused tokens)
WORD0 = 1256

def split(text):
    """text -> list of token strings: ' Word' and punctuation"""
    out = []
    for w in text.split():
        tail = []
        while w and w[-1] in "".join(PUNCT):
            tail.insert(0, w[-1]); w = w[:-1]
        out.append(" " + w); out += tail
    return out

def _en_words():
    r = random.Random(1); s = set()
    for _ in range(30000): s.update(split(en_sentence(r)))
    return s

def vocab():
    ws = _en_words()
    for a, b in DE + RU: ws.update(split(a)); ws.update(split(b))
    ws = {w for w in ws if w not in PUNCT}
    en = {w for w in _en_words() if w not in PUNCT}
    ws |= {" " + w[1:].capitalize() for w in en} | {" " + w[1:].lower() for w in en}
    for p in PROMPTS.values():
        for w in p.replace(":", "").replace(",", "").replace(".", "").split(): ws.add(" " + w)
    return sorted(ws)

WORDS = vocab()
TOK = {}
for i in range(256): TOK[bytes([i])] = BYTE0 + i
for i, w in enumerate(WORDS): TOK[w.encode()] = WORD0 + i
ID2STR = {v: k for k, v in TOK.items()}
EN_WORDS = sorted({w[1:].lower() for w in _en_words() if w not in PUNCT})

def encode(text): return [TOK[t.encode()] for t in split(text)]
def decode(ids): return b"".join(ID2STR.get(i, b"") for i in ids).decode("utf8", "replace")

def tokenize_prompt(text):
    """whisper.cpp's greedy tokenizer (bytes, C locale classes)"""
    import re
    b = text.encode()
    pat = re.compile(rb"'s|'t|'re|'ve|'m|'ll|'d| ?[A-Za-z]+| ?[0-9]+| ?[^\sA-Za-z0-9]+|\s+(?!\S)|\s+")
    out = []
    for w in pat.findall(b):
        i = 0
        while i < len(w):
            for j in range(len(w), i, -1):
                if w[i:j] in TOK: out.append(TOK[w[i:j]]); i = j; break
            else: i += 1
    return out

def random_words(r):
    n = r.randint(2, 6)
    ws = [r.choice(EN_WORDS) for _ in range(n)]
    ws = [" ".join(x) if False else (x.capitalize() if (" " + x) not in TOK_STR or x in KEEP_CAP else x) for x in ws]
    ws[0] = ws[0].capitalize()
    return " ".join(ws) + "."

TOK_STR = set(WORDS)
KEEP_CAP = {w.lower() for w in NAMES + DAYS + ["I"]}

def held_out(text):
    """10 % of the English sentences with more than 3 words never enter training"""
    if len(text.split()) < 4: return False
    return hashlib.md5(text.encode()).digest()[0] < 26

if __name__ == "__main__":
    print(len(EN_WORDS), "English words:", " ".join(EN_WORDS)); print(len(WORDS), "word tokens")
    for l, S in (("de", DE), ("ru", RU)):
        w = {x for a, b in S for x in split(a) if x not in PUNCT}; print(l, len(w), "words", len(S), "sentences")
    r = random.Random(0); s = {en_sentence(r) for _ in range(200000)}; print(len(s), "English sentences, held out", sum(map(held_out, s)))
    for _ in range(12): print(en_sentence(r))
    print(random_words(r)); print({k: len(tokenize_prompt(p)) for k, p in PROMPTS.items()})
