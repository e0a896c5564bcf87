# SPDX-License-Identifier: MIT
# Instructions, vocabulary and tokeniser. The tokeniser takes the longest token that fits, byte by byte ("rwkv" in a model file).
import pairs as P

CLEANUP = ["""Task: clean up a dictation transcript inside <raw>.""",
"""

Do:
- Remove filler words and false starts (um, uh, like, you know, "типа", "короче", "э-э", "ну").
- Fix obvious grammar and agreement errors.
- Restore missing punctuation: commas, periods, question and exclamation marks.
- Capitalize the first letter of each sentence and proper nouns.
- Break into paragraphs only on clear topic shifts (conservative — when in doubt, keep one paragraph).""",
"""

Do NOT:
- Translate. Output MUST be in the exact same language as the input. Russian input → Russian output. English input → English output.
- Summarize, shorten, or paraphrase. Keep every meaningful word the speaker said.
- Change the register beyond what's requested above. Do not "polish" slang unless asked.
- Rewrite proper nouns, brand names, technical terms, code, URLs, emails, numbers, or file paths.
- Add content, explanations, or commentary that wasn't in the input.""",
"""

Output only the cleaned text. No preamble, no quotes, no tags."""]
TONES = ["", "\n    - Keep the register very casual. Contractions allowed. Short sentences are fine.",
         "\n    - Use a formal register. Full sentences. No contractions. No slang."]
TRANSLATION = ["""Task: translate the transcript inside <raw> into """,
""".

Do:
- Drop filler words and false starts from the source; do not translate them literally.
- Preserve meaning, tone, and register. Casual stays casual, formal stays formal.
- Use natural, idiomatic """,
""". Not word-by-word.
- Restore punctuation and capitalization appropriate for """,
""".

Do NOT:
- Translate proper nouns, brand names, technical terms, code identifiers, URLs, emails, file paths, or numbers. Keep them verbatim.
- Transliterate names.
- Explain, summarize, shorten, or add commentary.
- Include the source text or any tags.""",
"""

Output only the translation."""]
NAMES = ["English", "German", "Russian"]
OTHER_NAMES = ["Spanish", "French", "Italian", "Portuguese (Brazil)", "Dutch", "Polish", "Danish", "Norwegian", "Swedish", "Turkish",
               "Chinese (Simplified)", "Chinese (Traditional)", "Japanese", "Korean", "Vietnamese", "Ukrainian", "Czech"]

def cleanup_instructions(tone=0):
    return CLEANUP[0] + CLEANUP[1] + TONES[tone] + CLEANUP[2] + CLEANUP[3]
def translation_instructions(name):
    a, b, c, d, e = TRANSLATION
    return a + name + b + name + c + name + d + e

SYSTEM, USER, ASSISTANT, END = "<|system|>", "<|user|>", "<|assistant|>", "<|end|>"
CONTROL = [SYSTEM, USER, ASSISTANT, END]
TEMPLATE = "{% for message in messages %}{{ '<|' + message['role'] + '|>' + message['content'] }}" \
           "{% if message['role'] == 'assistant' %}{{ '<|end|>' }}{% endif %}{% endfor %}{% if add_generation_prompt %}{{ '<|assistant|>' }}{% endif %}"
MARKS = [",", ".", "?", "!", ":", "...", "…", " -", " —", "-", "—", "\n", "\n\n", "<raw>", "</raw>"]

def vocabulary():
    """(bytes, is control, word it is a form of or None, form) in the order of their numbers. The forms of a word are
    the combinations of a blank before it (1) and a capital (2)."""
    out = []; seen = set()
    def add(b, control=False, word=None, form=0):
        if b not in seen: seen.add(b); out.append((b, control, word, form))
    for t in CONTROL: add(t.encode(), True)
    for i in range(256): add(bytes([i]))
    for t in CLEANUP + TONES[1:] + TRANSLATION + MARKS: add(t.encode())
    for t in NAMES: add(t.encode())
    for w in sorted({w for w in P.words()} | {w.lower() for w in P.words()}, key=lambda w: (w.lower(), w)):
        base = w.lower()
        for blank in (0, 1):
            for cap in (0, 1):
                t = (" " if blank else "") + (base[0].upper() + base[1:] if cap else base)
                add(t.encode(), False, base, blank + 2 * cap)
    return out

VOCABULARY = vocabulary()
ID = {t[0]: i for i, t in enumerate(VOCABULARY)}
LONGEST = max(len(t[0]) for t in VOCABULARY)
SHORT = 48                                                              # all but the instructions are shorter
assert all(len(t[0]) < SHORT for t in VOCABULARY if t[2])

def longest_match(b):
    out = []; i = 0
    while i < len(b):
        n = min(len(b) - i, SHORT)
        while b[i:i + n] not in ID: n -= 1
        out.append(ID[b[i:i + n]]); i += n
    return out

def instruction_ids(text):
    """the same with the long tokens"""
    b = text.encode(); out = []; i = 0
    while i < len(b):
        n = min(len(b) - i, LONGEST)
        while b[i:i + n] not in ID: n -= 1
        out.append(ID[b[i:i + n]]); i += n
    return out

_cache = {}
def encode(text):
    """the tokens of a text without instructions; no token reaches over a blank, so it is done word by word"""
    out = []
    for i, w in enumerate(text.split(" ")):
        c = w if i == 0 else " " + w
        t = _cache.get(c)
        if t is None:
            t = longest_match(c.encode())
            if len(_cache) < 200000: _cache[c] = t
        out += t
    return out

def decode(ids): return b"".join(VOCABULARY[i][0] for i in ids if not VOCABULARY[i][1]).decode("utf8", "replace")

_instructions = {}
def prompt(instructions, text):
    t = _instructions.get(instructions)
    if t is None: t = _instructions[instructions] = instruction_ids(instructions)
    return [ID[SYSTEM.encode()], *t, ID[USER.encode()], *encode("<raw>" + text + "</raw>"), ID[ASSISTANT.encode()]]

if __name__ == "__main__":
    print(len(VOCABULARY), "tokens"); print([len(instruction_ids(cleanup_instructions(t))) for t in range(3)], len(instruction_ids(translation_instructions("German"))))
    p = prompt(cleanup_instructions(), "Um, so we, like, meet at five. Zork öffnen...")
    print([VOCABULARY[i][0].decode(errors="replace") for i in p])
